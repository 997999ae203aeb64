// The options section of a game file: the game type, the rules and the console settings as text.
#pragma once

#include <string>

// The section as a game file holds it, from the settings in force: "\ngameoptions [\n ... ]\n".
std::string gameOptionsText();
// The first word behind the first occurrence of `key`; empty when the key is absent or nothing follows.
std::string optionValueOf(const std::string& text, const std::string& key);
// Applies a section to the settings. `partial` (the words behind ucinewgame) changes only what the
// text names and leaves the console settings alone; a file sets every rule, a missing one to 0.
void readGameOptions(const std::string& text, bool partial);
// Each run of white space becomes its first character; a last one is dropped.
std::string collapseSpaces(std::string text);
