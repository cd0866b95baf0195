// What the workbench asks of the platform beyond the CoreFoundation names.
#pragma once

// From now on CFBundleGetFunctionPointerForName answers null, in every bundle, for the names that `hidden` says true
// to: hosts that lack an entry point. Null ends that. May be called from any thread, as may be `hidden`.
extern "C" __attribute__((visibility("default"))) void SokPlatformHideFunctions(bool (*hidden)(const char* name));

// Calls `each` for every text in a property list (an Info.plist, a table of strings), in UTF-8, in the order of the
// keys. 0 when the list is sound; else nothing was called and the answer is the line that is wrong, or -1 when the file
// cannot be read.
extern "C" __attribute__((visibility("default"))) int SokPlatformReadTexts(
    const char* path, void (*each)(void* context, const char* key, const char* text), void* context);
