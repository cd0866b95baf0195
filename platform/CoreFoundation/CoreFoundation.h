/// @file
/// The CoreFoundation names that this project calls, for systems without the framework. This directory is on the
/// include path only there; elsewhere <CoreFoundation/CoreFoundation.h> finds the framework's own header, and the same
/// callers compile against it.
///
/// It is never looser than the framework: what is an error or ends the process there does so here. Where they differ:
/// - Languages. Here a bundle's texts come in the user's languages (LANGUAGE, LC_ALL, LC_MESSAGES, LANG), as if the
///   program ran in them. There the languages that the main program offers decide, English where it has none: a German
///   sees the English texts of an extension unless the program itself runs in German.
/// - What this project does not call is not declared, and options are few: three types of number, no options to compare
///   or format with, one allocator.
/// - Encodings are Mac Roman, ASCII, UTF-8, UTF-16 and UTF-32. The application's own (Carbon) is always Mac Roman here.
/// - Property lists and string tables are XML or old-style texts, never binary. CFSTR takes ASCII.
/// - Bundles have their parts in Contents, and no file is chosen by a suffix of the platform (name-macos.txt).
/// - The framework's headers bring names of their own, some of them macros (`pascal`, `nil`, `Point`, `Style`), and the
/// C
///   library's mark functions as deprecated (`sprintf`): cmake/macos/apple_names.h has those that every build looks for.
///
/// Ownership follows the framework: a function with Create or Copy in its name hands over one reference, which the
/// caller gives back with CFRelease; one with Get lends an object that lives as long as its owner. Functions that make
/// an object answer null when memory runs out. Strings are UTF-16; lengths, positions and ranges count code units.
/// Objects are immutable and may be used from any thread.
#pragma once

#include <stdarg.h>
#include <stdint.h>

/// In front of every function and constant of the framework.
#define CF_EXPORT extern "C" __attribute__((visibility("default")))

/// Numbers of fixed width, UTF-16 units, Pascal strings.
///@{
typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef unsigned short UInt16;
typedef unsigned int UInt32;
typedef signed int SInt32;
typedef UInt16 UniChar;
typedef unsigned char* StringPtr;  ///< a length byte, then that many bytes
///@}

/// Counts, kinds of object, encodings; a Ref is a reference to an object of its kind.
///@{
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef UInt32 CFStringEncoding;
typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFNull* CFNullRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFBundle* CFBundleRef;
///@}

/// A stretch of code units.
typedef struct {
  CFIndex location;  ///< of the first unit, from 0
  CFIndex length;    ///< in units
} CFRange;

/// A range from its two numbers.
inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return CFRange{location, length}; }

/// The only allocator: memory always comes from the C library, and allocator arguments are not looked at.
CF_EXPORT const CFAllocatorRef kCFAllocatorDefault;

// Objects of every kind.

/// Adds a reference and returns the object. Null ends the process.
CF_EXPORT CFTypeRef CFRetain(CFTypeRef object);
/// Gives one reference back; the last one frees the object. Null ends the process.
CF_EXPORT void CFRelease(CFTypeRef object);
/// The number of the object's kind, to compare with the functions below.
///@{
CF_EXPORT CFTypeID CFGetTypeID(CFTypeRef object);
CF_EXPORT CFTypeID CFStringGetTypeID(void);
///@}

// Values of property lists.

/// What a number is made from.
enum CFNumberType : CFIndex { kCFNumberSInt32Type = 3, kCFNumberSInt64Type = 4, kCFNumberDoubleType = 13 };

/// The only ones of their kinds.
///@{
CF_EXPORT const CFBooleanRef kCFBooleanTrue;
CF_EXPORT const CFBooleanRef kCFBooleanFalse;
CF_EXPORT const CFNullRef kCFNull;
///@}
/// A number read from `value`, which points to an integer or a double as `type` says; null for another type.
CF_EXPORT CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);

// Strings.

/// Encodings of bytes.
enum : CFStringEncoding {
  kCFStringEncodingMacRoman = 0,
  kCFStringEncodingUTF16 = 0x0100,  ///< byte order from a mark, else the machine's
  kCFStringEncodingASCII = 0x0600,
  kCFStringEncodingNonLossyASCII = 0x0BFF,  ///< known to CFStringGetMaximumSizeForEncoding only
  kCFStringEncodingUTF8 = 0x08000100,
  kCFStringEncodingUTF32 = 0x0c000100,
  kCFStringEncodingUTF16BE = 0x10000100,
  kCFStringEncodingUTF16LE = 0x14000100,
  kCFStringEncodingUTF32BE = 0x18000100,
  kCFStringEncodingUTF32LE = 0x1c000100,
};

/// How strings are compared, and what comes of it.
///@{
enum CFComparisonResult : CFIndex { kCFCompareLessThan = -1, kCFCompareEqualTo = 0, kCFCompareGreaterThan = 1 };
typedef unsigned long CFStringCompareFlags;
///@}

/// A string for an ASCII literal, made once for each text and never freed.
///@{
CF_EXPORT CFStringRef __CFStringMakeConstantString(const char* text);
#define CFSTR(literal) __CFStringMakeConstantString("" literal "")
///@}

/// Decodes zero-terminated bytes. Null when they are invalid in the encoding or the encoding is unknown. One byte order
/// mark in front of UTF-8 or UTF-16 is dropped. Mac Roman and ASCII never fail: a high byte in ASCII keeps its value.
CF_EXPORT CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* bytes, CFStringEncoding encoding);
/// Copies units as they are, zeros and unpaired surrogates included.
CF_EXPORT CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* units, CFIndex length);
/// printf's directives, plus `%@` (the text of an object), `%S` (zero-terminated UTF-16), `%C` (a code unit) and `%P` (a Pascal
/// string); `%s` is Mac Roman. One numeric directive yields at most 510 characters. Null when a width or precision does
/// not fit an int. `options` is not looked at.
///@{
CF_EXPORT CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef options, CFStringRef format,
                                               ...);
CF_EXPORT CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef allocator, CFDictionaryRef options,
                                                           CFStringRef format, va_list arguments);
///@}
/// In code units.
CF_EXPORT CFIndex CFStringGetLength(CFStringRef string);
/// Copies the units of a range that lies within the string; adds no zero unit.
CF_EXPORT void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);
/// Encodes at most 255 bytes behind their length byte into `size` bytes. False when the text is too long (the buffer is
/// left alone, or for text beyond ASCII its length byte becomes 0) or not representable (length byte 0).
CF_EXPORT Boolean CFStringGetPascalString(CFStringRef string, StringPtr buffer, CFIndex size,
                                          CFStringEncoding encoding);
/// Encodes a range and returns how many units that took, `*used` the bytes; both may be null, and a null buffer only
/// counts. Stops before what does not fit, and, when `lossByte` is 0, before what the encoding lacks; another
/// `lossByte` takes the place of each such character in the 8-bit encodings. `isExternal` adds a byte order mark to
/// kCFStringEncodingUTF16.
CF_EXPORT CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                                   Boolean isExternal, UInt8* buffer, CFIndex size, CFIndex* used);
/// The most bytes that `length` units can take; -1 when that exceeds a CFIndex.
CF_EXPORT CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
/// The decimal number that the text begins with, blanks skipped and saturated to 32 bits; 0 when there is none.
CF_EXPORT SInt32 CFStringGetIntValue(CFStringRef string);
/// Compares unit by unit as unsigned numbers, a proper prefix being less. No options are offered.
CF_EXPORT CFComparisonResult CFStringCompare(CFStringRef left, CFStringRef right, CFStringCompareFlags options);

// URLs of files.

/// A URL for the `length` bytes of a path; null for an empty one. A relative path counts from the working directory.
CF_EXPORT CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* path, CFIndex length,
                                                           Boolean isDirectory);
/// Writes the zero-terminated path, always absolute. False when it does not fit.
CF_EXPORT Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                                   CFIndex size);

// Bundles: folders laid out as Contents/Info.plist, Contents/MacOS/<executable>, Contents/Resources. A bundle is never
// forgotten, and making it twice gives the same object.

/// "CFBundleExecutable", the key of the executable's name in Info.plist.
CF_EXPORT const CFStringRef kCFBundleExecutableKey;

/// Null unless the URL names an existing directory; any directory will do.
CF_EXPORT CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef url);
/// The bundle around the running program, or the program's folder. Borrowed.
CF_EXPORT CFBundleRef CFBundleGetMainBundle(void);
/// A bundle that was made, or that has a loaded image inside its Contents. Of several the loaded one, else the one with
/// the highest CFBundleVersion, else the one made last. Borrowed; null when there is none.
CF_EXPORT CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);
/// Borrowed; null when the bundle has none.
CF_EXPORT CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
/// The bundle's folder.
CF_EXPORT CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
/// Null when the bundle has no executable file.
CF_EXPORT CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);
/// The value from the localised InfoPlist.strings, else from Info.plist, of whatever type it is. Borrowed; null when
/// neither has the key.
CF_EXPORT CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
/// Whether a function look-up has loaded the executable or an identifier look-up has seen it loaded.
CF_EXPORT Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle);
/// Loads the executable unless it is loaded. False when there is none or it cannot be loaded.
CF_EXPORT Boolean CFBundleLoadExecutable(CFBundleRef bundle);
/// The address of a function or variable that the bundle's own executable exports, loading it first when needed; for
/// the main bundle one that the program exports. Null when there is none; symbols of other images do not count.
CF_EXPORT void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name);
/// A file or folder in Resources, else in the folder of the language chosen. `type` is its extension, with or without
/// the dot; null or "" for a name that has it. Without a name the first file of that type. Null when there is none.
CF_EXPORT CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                           CFStringRef subdirectory);
/// The value of the key in the table (null or "": "Localizable"). A missing key gives `value`, or the key itself when
/// `value` is null or empty; a null key gives `value`, or an empty string.
CF_EXPORT CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                                  CFStringRef table);
