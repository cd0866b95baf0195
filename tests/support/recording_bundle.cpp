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

// The arguments of the rows that do not list them.
#define ARGUMENTS_SX_StartSonkelEdit (text, version)
#define ARGUMENTS_SX_StartSonkelEdit_UTF16 (text, version)
#define ARGUMENTS_SX_EndSonkelEdit (version)
#define ARGUMENTS_SX_CancelSonkelEdit (version)
#define ARGUMENTS_SX_StartMassEdit (edit, steps, version)
#define ARGUMENTS_SX_EndMassEdit (edit, keep, version)
#define ARGUMENTS_SX_LoadTGF (stafflist, slot, measure, layer, option, version)
#define ARGUMENTS_SX_SaveTGF (frame, version)
#define ARGUMENTS_SX_FreeTGF (frame, version)
#define ARGUMENTS_SX_InsertEXENTRY (frame, index, count, version)
#define ARGUMENTS_SX_DeleteEXENTRY (frame, index, count, version)
#define ARGUMENTS_SX_ReduceEntries (frame, version)
#define ARGUMENTS_SX_LoadEData (tag, id, buffer, size, version)
#define ARGUMENTS_SX_SaveEData (tag, id, buffer, size, version)

extern "C" {

#define SX_ENTRY(result, name, parameters, arguments, fallback) \
  result name parameters { return Recorder<result>{#name} arguments; }
#define SX_CUSTOM(result, name, parameters) \
  result name parameters { return Recorder<result>{#name} ARGUMENTS_##name; }
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"

Recording* SX_TestRecording();
Recording* SX_TestRecording() { return &gRecording; }

}  // extern "C"
