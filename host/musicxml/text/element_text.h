// The text of one element, changed child by child; what is not touched keeps its bytes.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/musicxml/text/markup.h"

namespace sok {

// Names of children in the order that the schema gives them.
using ElementOrder = std::span<const std::string_view>;
extern const ElementOrder kNoteOrder;
extern const ElementOrder kPitchOrder;
extern const ElementOrder kBarlineOrder;

class ElementText {
 public:
  explicit ElementText(std::string text);
  explicit ElementText(std::string_view text) : ElementText(std::string(text)) {}

  const std::string& text() const& { return text_; }
  std::string text() && { return std::move(text_); }
  bool Has(std::string_view name) const { return Find(name) != nullptr; }
  bool IsEmpty() const { return children_.empty(); }
  // The first child of a name as text, and what stands between its tags; empty when there is none.
  std::string Child(std::string_view name) const;
  std::string Content(std::string_view name) const;
  std::vector<std::string> Children(std::string_view name) const;

  // Puts a child where the order has its place; a name that it does not know goes to the end. Children look like their
  // neighbours.
  void Insert(const std::string& child, ElementOrder order = {});
  // What stands between the tags of the first child of that name, which is made when it is missing.
  void SetContent(std::string_view name, std::string_view content, ElementOrder order = {});
  void Replace(std::string_view name, const std::string& child);  // the first of that name
  // All children of a name for which `goes` answers true, with the white space before them.
  template <typename Predicate>
  void RemoveIf(std::string_view name, Predicate goes) {
    for (std::size_t i = children_.size(); i-- > 0;) {
      if (IsNamed(TextOf(children_[i]).substr(1), name) && goes(TextOf(children_[i]))) Cut(i);
    }
  }
  void Remove(std::string_view name) {
    RemoveIf(name, [](std::string_view) { return true; });
  }
  void RemoveAttribute(std::string_view name);  // of the element itself

 private:
  struct ChildPlace {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  const ChildPlace* Find(std::string_view name) const;
  std::string_view TextOf(const ChildPlace& child) const {
    return std::string_view(text_).substr(child.begin, child.end - child.begin);
  }
  void Scan();
  void Cut(std::size_t index);
  // Puts text in place of another one; children from `index` on stand behind it.
  void Exchange(std::size_t begin, std::size_t end, std::string_view text, std::size_t index);

  std::string text_;
  std::vector<ChildPlace> children_;
};

// The value of an attribute of its start tag, as it is spelt; empty when there is none.
std::string_view AttributeOf(std::string_view text, std::string_view name);

}  // namespace sok
