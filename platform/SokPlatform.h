// What the workbench asks of the platform beyond the CoreFoundation names.
#pragma once

// From now on CFBundleGetFunctionPointerForName answers null, in every bundle, for the names that `hidden` says true
// to: hosts that lack an entry point. Null ends that. May be called from any thread, as may be `hidden`.
extern "C" __attribute__((visibility("default"))) void SokPlatformHideFunctions(bool (*hidden)(const char* name));
