#include "tests/support/recording_engine.h"

#include "tests/support/open_engine.h"

RecordingEngine::RecordingEngine() {
  const CFBundleRef bundle = OpenEngine(SOK_RECORDING_BUNDLE);
  recording_ = reinterpret_cast<Recording* (*)()>(EngineFunction(bundle, "SX_TestRecording"))();
  *recording_ = {};
}
