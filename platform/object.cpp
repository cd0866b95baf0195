#include "platform/object.h"

#include <cstdio>
#include <cstdlib>

namespace sok {
namespace {

const Object* FromRef(CFTypeRef object) { return static_cast<const Object*>(object); }

// The object behind the argument of a function that ends the process for null, as the framework does.
const Object* Present(CFTypeRef object, const char* function) {
  if (object == nullptr) {
    std::fprintf(stderr, "SokPlatform: %s was called with null\n", function);
    std::abort();
  }
  return FromRef(object);
}

}  // namespace

std::u16string Object::Description() const { return u"<object>"; }

}  // namespace sok

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef object) {
  sok::Present(object, "CFRetain")->Retain();
  return object;
}

void CFRelease(CFTypeRef object) { sok::Present(object, "CFRelease")->Release(); }

CFTypeID CFGetTypeID(CFTypeRef object) { return static_cast<CFTypeID>(sok::FromRef(object)->kind()); }
