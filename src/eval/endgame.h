// Evaluators for special material, and the per-thread maps from material key to them.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "core/types.h"

class Position;

// What a scaling evaluator returns; 64 leaves a score as it is, 255 means "no scaling".
enum ScaleFactor : int { ScaleFactorNormal = 64, ScaleFactorNone = 255 };

template <typename T>
class EndgameBase {
 public:
  virtual ~EndgameBase() = default;
  virtual Color strongerSide() const = 0;
  virtual T operator()(const Position& pos) const = 0;
};

// Kind numbers of the evaluators that exist.
enum EndgameKind : int {
  LoneLeader = 0,       // a bare leader against more
  LeaderSwordLeader = 2  // "KSK"
};

template <int Kind, typename T>
class Endgame : public EndgameBase<T> {
 public:
  explicit Endgame(Color strong) : strong_(strong), weak_(~strong) {}
  Color strongerSide() const override { return strong_; }
  T operator()(const Position& pos) const override;

 private:
  Color strong_, weak_;
};

// The hunt of a bare leader, one fixed object per strong colour; they hold no state beyond it, so
// every thread shares them.
extern const Endgame<LoneLeader, Value> loneLeaderEndgame[2];

// The material key that a code such as "KSK" gives for colour c: the side before the second 'K'
// comes out as colour c.
Key endgameCodeKey(const std::string& code, Color c);

// One object per thread. Only the scaling map is looked into by the material probe, and it stays
// empty: a lone Sword against a leader is settled by the lone-leader test instead.
class Endgames {
 public:
  Endgames();
  const EndgameBase<Value>* probeValue(Key key) const;
  const EndgameBase<ScaleFactor>* probeScaleFactor(Key key) const;

 private:
  std::map<Key, std::unique_ptr<EndgameBase<Value>>> values_;
  std::map<Key, std::unique_ptr<EndgameBase<ScaleFactor>>> scaleFactors_;
};
