#include "platform/object.h"

namespace sok {
namespace {

const Object* FromRef(CFTypeRef object) { return static_cast<const Object*>(object); }

}  // namespace

std::u16string Object::Description() const { return u"<object>"; }

}  // namespace sok

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef object) {
  if (object != nullptr) sok::FromRef(object)->Retain();
  return object;
}

void CFRelease(CFTypeRef object) {
  if (object != nullptr) sok::FromRef(object)->Release();
}

CFTypeID CFGetTypeID(CFTypeRef object) { return static_cast<CFTypeID>(sok::FromRef(object)->kind()); }
