// An engine bundle that has every entry point of the host's table and does nothing but write down what it was called
// with. For tests that each wrapper reaches the function of its name with its arguments unchanged.
#pragma once

#include <string>
#include <vector>

struct RecordedCall {
  std::string name;
  std::vector<std::string> arguments;  // the bytes of each, in order
};

// What the bundle writes into and answers from.
struct Recording {
  std::vector<RecordedCall> calls;
  long answer = 0;  // every function's answer, cut to its width; pointers as numbers
};

class RecordingEngine {
 public:
  // Opens the bundle and makes it the one that the kit's wrappers search. One in a process.
  RecordingEngine();

  std::vector<RecordedCall>& calls() { return recording_->calls; }
  const RecordedCall& last() const { return recording_->calls.back(); }
  void Answer(long answer) { recording_->answer = answer; }

 private:
  Recording* recording_;
};
