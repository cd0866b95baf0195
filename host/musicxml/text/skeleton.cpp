#include "host/musicxml/text/skeleton.h"

#include <algorithm>

#include "host/musicxml/text/markup.h"

namespace sok {
namespace {

// What the elements below the root are called that hold cells, and the cells.
struct Form {
  std::string_view root;
  std::string_view outer;
  std::string_view inner;
};
constexpr Form kForms[] = {{"score-partwise", "part", "measure"}, {"score-timewise", "measure", "part"}};

class SkeletonMaker {
 public:
  explicit SkeletonMaker(std::string_view text) : text_(text) {}

  std::optional<Skeleton> Make() {
    for (std::size_t at = text_.find('<'); at != std::string_view::npos; at = text_.find('<', end_)) {
      end_ = MarkupEnd(text_, at);
      if (text_[end_ - 1] != '>' || !Take(at)) return std::nullopt;
    }
    if (depth_ != 0 || form_ == nullptr) return std::nullopt;
    skeleton_.text.append(text_, kept_);
    return std::move(skeleton_);
  }

 private:
  // False: the text has not the structure of a score.
  bool Take(std::size_t at) {
    const std::string_view tag = text_.substr(at, end_ - at);
    if (tag.starts_with("</")) return --depth_ >= 0;
    if (tag.starts_with("<!") || tag.starts_with("<?")) {
      return !tag.starts_with("<!DOCTYPE") || tag.find('[') == std::string_view::npos;
    }
    const bool empty = tag.ends_with("/>");
    const std::string_view name = ElementName(tag);
    if (depth_ == 0 && (empty || !TakeRoot(name))) return false;
    if (depth_ == 1) inside_ = name == form_->outer;
    if (depth_ == 2 && inside_ && name == form_->inner) return TakeCell(at, empty);
    if (!empty) ++depth_;
    return true;
  }

  bool TakeRoot(std::string_view name) {
    const auto* const form =
        std::find_if(std::begin(kForms), std::end(kForms), [&](const Form& each) { return each.root == name; });
    if (form_ != nullptr || form == std::end(kForms)) return false;
    form_ = form;
    return true;
  }

  bool TakeCell(std::size_t at, bool empty) {
    if (!empty) {
      const std::size_t content = end_;
      end_ = ElementEnd(text_, at);
      const std::size_t close = text_.rfind('<', end_ - 1);
      const std::string_view tag = text_.substr(close);
      if (!tag.starts_with("</") || ElementName(tag) != form_->inner) return false;
      skeleton_.text.append(text_, kept_, content - kept_);
      kept_ = close;
    }
    skeleton_.cells.push_back({at, end_});
    return true;
  }

  std::string_view text_;
  Skeleton skeleton_;
  const Form* form_ = nullptr;
  std::size_t end_ = 0;   // of the tag at hand
  std::size_t kept_ = 0;  // the text up to here is in the skeleton, or left out
  int depth_ = 0;
  bool inside_ = false;  // of an element that holds cells
};

}  // namespace

std::optional<Skeleton> SkeletonOf(std::string_view text) { return SkeletonMaker(text).Make(); }

}  // namespace sok
