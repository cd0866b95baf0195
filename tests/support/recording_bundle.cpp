// The bundle behind RecordingEngine: one function for every row of the host's table.
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
#include "tests/support/recording_engine.h"

namespace {

Recording gRecording;

template <typename T>
std::string BytesOf(const T& value) {
  return {reinterpret_cast<const char*>(&value), sizeof(value)};
}

template <typename Result>
struct Recorder {
  const char* name;

  template <typename... Arguments>
  Result operator()(Arguments... arguments) const {
    gRecording.calls.push_back({name, {BytesOf(arguments)...}});
    if constexpr (std::is_pointer_v<Result>) {
      return reinterpret_cast<Result>(gRecording.answer);
    } else {
      return static_cast<Result>(gRecording.answer);
    }
  }
};

}  // namespace

extern "C" {

#define SX_ENTRY(result, name, parameters, arguments, fallback) \
  result name parameters { return Recorder<result>{#name} arguments; }
#define SX_CUSTOM(result, name, parameters, arguments) \
  result name parameters { return Recorder<result>{#name} arguments; }
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"

Recording* SX_TestRecording();
Recording* SX_TestRecording() { return &gRecording; }

}  // extern "C"
