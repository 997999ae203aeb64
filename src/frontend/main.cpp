// Entry point: identification, start-up of every table, then the command loop.
#include <iostream>

int main() {
  std::cout << "Dorn 0.25 64bit by Alda Reve" << std::endl;
  return 0;
}
