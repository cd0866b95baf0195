// What the headers of macOS do to names, so that other systems notice a kit that would not compile there. Included in
// front of every source of the kit and of entry/ in a compile of its own, for its messages alone (SokAppleNames.cmake).
#pragma once

#include <assert.h>
#include <stdio.h>
#include <stdlib.h>

// <assert.h>. A declaration that follows may not be the first to say that it does not return.
extern "C" __attribute__((__noreturn__)) void __assert_rtn(const char*, const char*, int, const char*);

// <stdio.h>, <stdlib.h>
extern "C" {
__attribute__((deprecated)) int sprintf(char*, const char*, ...) noexcept;
__attribute__((deprecated)) int vsprintf(char*, const char*, va_list) noexcept;
__attribute__((deprecated)) char* tmpnam(char*) noexcept;
__attribute__((deprecated)) char* mktemp(char*) noexcept;
}

// <MacTypes.h> and <ConditionalMacros.h>, which every header of CoreFoundation includes.
#define pascal
#define nil nullptr
#define kInvalidID 0
typedef char* Ptr;
typedef Ptr* Handle;
typedef long Size;
typedef int Fixed;
typedef unsigned char Byte;
typedef signed char SignedByte;
typedef unsigned char Style;
typedef unsigned char Str255[256];
typedef unsigned int OptionBits;
typedef int OSStatus;
typedef short OSErr;
struct Point {
  short v, h;
};
struct Rect {
  short top, left, bottom, right;
};

// <sys/types.h> and <machine/endian.h>
#define howmany(x, y) (((x) + ((y)-1)) / (y))
#define htonl(x) (x)
#define htons(x) (x)
#define ntohl(x) (x)
#define ntohs(x) (x)

// <AssertMacros.h>, which Carbon includes, up to macOS 10.12 and wherever it is asked for.
#define check(assertion) ((void)(assertion))
#define check_noerr(error) ((void)(error))
#define check_string(assertion, message) ((void)(assertion))
#define debug_string(message) ((void)(message))
#define require(assertion, label) ((void)(assertion))
#define require_action(assertion, label, action) ((void)(assertion))
#define require_noerr(error, label) ((void)(error))
#define require_quiet(assertion, label) ((void)(assertion))
#define require_string(assertion, label, message) ((void)(assertion))
#define verify(assertion) ((void)(assertion))
#define verify_action(assertion, action) ((void)(assertion))
#define verify_noerr(error) ((void)(error))
#define verify_string(assertion, message) ((void)(assertion))
