#include "tests/support/recording_engine.h"

#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "tests/support/bundles.h"

RecordingEngine::RecordingEngine() {
  gSonkelBundle = OpenBundle(SOK_RECORDING_BUNDLE);
  recording_ = FunctionOf<Recording*()>(gSonkelBundle, "SX_TestRecording")();
  *recording_ = {};
}
