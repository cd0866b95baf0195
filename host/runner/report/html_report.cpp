#include "host/runner/report/html_report.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>

#include "host/runner/report/embedded.h"
#include "host/runner/report/engraving.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

// Beyond this many staff-measures a grid shows only the measures in which something changed: browsers have limits.
constexpr long kLargestGrid = 40000;

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += letter;
    }
  }
  return escaped;
}

std::string Sentence(const ReportCell& cell, Purpose purpose) {
  std::string text(Name(cell.verdict.outcome));
  text += ": " + Text(cell.verdict, purpose);
  for (const std::string& note : cell.notes) text += "; " + note;
  return text;
}

// What a kept staff-measure looks like in the grid: nothing there, a rest already there, music.
std::string_view CellClass(const Verdict& verdict) {
  if (verdict.outcome != Outcome::kKept) return Name(verdict.outcome);
  switch (verdict.reason) {
    case Reason::kNothing:
    case Reason::kMissing:
      return "none";
    case Reason::kWholeRest:
    case Reason::kHiddenWholeRest:
    case Reason::kLooksWhole:
    case Reason::kRestBesideGrace:
    case Reason::kRestBesideOthers:
      return "rest";
    case Reason::kPassedOver:
      return "refused";
    default:
      return "music";
  }
}

std::string Grid(const Score& score, const ScoreReport& report) {
  std::map<short, std::map<short, const ReportCell*>> by_slot;
  std::set<short> measures;
  const bool large = static_cast<long>(report.cells.size()) > kLargestGrid;
  for (const ReportCell& cell : report.cells) {
    if (!large || cell.verdict.outcome != Outcome::kKept) measures.insert(cell.measure);
    by_slot[cell.slot][cell.measure] = &cell;
  }
  std::string html;
  if (large) html += "<p>The score is large: the grid shows the measures in which something changed.</p>\n";
  if (measures.empty()) return html;
  html += "<div class=\"grid\" tabindex=\"0\"><table>\n<thead><tr><th scope=\"col\">Staff</th>";
  for (const short measure : measures) {
    const std::string& number = score.measures()[static_cast<std::size_t>(measure - 1)].number;
    html += "<th scope=\"col\">" + Escaped(number.empty() ? std::to_string(measure) : number) + "</th>";
  }
  html += "</tr></thead>\n<tbody>\n";
  for (const auto& [slot, cells] : by_slot) {
    const std::string label = Escaped(StaffLabel(score.staves()[static_cast<std::size_t>(slot - 1)]));
    html += "<tr><th scope=\"row\">" + label + "</th>";
    for (const short measure : measures) {
      const auto found = cells.find(measure);
      if (found == cells.end()) {
        html += "<td></td>";
        continue;
      }
      const ReportCell& cell = *found->second;
      html += "<td class=\"" + std::string(CellClass(cell.verdict)) + "\" title=\"" +
              Escaped(MeasureLabel(score, measure)) + ", " + label + " &#8211; " +
              Escaped(Sentence(cell, report.purpose)) + "\"></td>";
    }
    html += "</tr>\n";
  }
  return html +
         "</tbody></table></div>\n<p class=\"told\" aria-live=\"polite\">Point at or tap a measure to read why.</p>\n";
}

// Each reason once, the most frequent first, with where it holds when that is short.
std::string Reasons(const Score& score, const ScoreReport& report) {
  std::map<std::string, std::vector<const ReportCell*>> by_text;
  for (const ReportCell& cell : report.cells) by_text[Sentence(cell, report.purpose)].push_back(&cell);
  std::vector<std::pair<std::string, std::vector<const ReportCell*>>> sorted(by_text.begin(), by_text.end());
  std::stable_sort(sorted.begin(), sorted.end(), [](const auto& left, const auto& right) {
    const bool left_kept = left.second[0]->verdict.outcome == Outcome::kKept;
    const bool right_kept = right.second[0]->verdict.outcome == Outcome::kKept;
    return left_kept != right_kept ? right_kept : left.second.size() > right.second.size();
  });
  std::string html = "<ul class=\"reasons\">\n";
  for (const auto& [text, cells] : sorted) {
    const Verdict& verdict = cells[0]->verdict;
    html += "<li><span class=\"swatch " + std::string(CellClass(verdict)) + "\"></span><b>" +
            std::to_string(cells.size()) + "</b> " + Escaped(text);
    if (verdict.outcome != Outcome::kKept) {
      html += " <details><summary>where</summary>";
      std::map<short, std::vector<short>> by_slot;
      for (const ReportCell* cell : cells) by_slot[cell->slot].push_back(cell->measure);
      for (const auto& [slot, measures] : by_slot) {
        html += "<div>" + Escaped(StaffLabel(score.staves()[static_cast<std::size_t>(slot - 1)])) + ": measures ";
        for (std::size_t i = 0; i < measures.size();) {
          std::size_t end = i;
          while (end + 1 < measures.size() && measures[end + 1] == measures[end] + 1) ++end;
          html += (i == 0 ? "" : ", ") + RangeText(measures[i], measures[end]);
          i = end + 1;
        }
        html += "</div>";
      }
      html += "</details>";
    }
    html += "</li>\n";
  }
  return html + "</ul>\n";
}

// "Measures 9-16 (printed 8-15)".
std::string Heading(const Score& score, const NumberRange& measures) {
  if (measures.first == measures.last) {
    std::string label = MeasureLabel(score, measures.first);
    label.front() = 'M';
    return label;
  }
  const auto number = [&score](short measure) {
    return score.measures()[static_cast<std::size_t>(measure - 1)].number;
  };
  const std::string first = number(measures.first), last = number(measures.last);
  const bool same = first == std::to_string(measures.first) && last == std::to_string(measures.last);
  return "Measures " + RangeText(measures.first, measures.last) +
         (same || first.empty() || last.empty() ? "" : " (printed " + first + "-" + last + ")");
}

std::string Pictures(const Score& score, const ScoreReport& report, const RunOptions& options) {
  if (report.changes.empty() || !report.error.empty()) return {};
  const Engraving engraving = Engrave(score, score.WriteText(options.write), report.changes, options.pictures);
  if (!engraving.trouble.empty()) {
    return "<p class=\"hint\">No pictures of the music: " + Escaped(engraving.trouble) +
           ". <code>scripts/install-verovio.sh</code> installs what draws them.</p>\n";
  }
  std::string html;
  for (const SystemPicture& system : engraving.systems) {
    html += "<section class=\"system\"><h3>" + Escaped(Heading(score, system.measures)) +
            "</h3>\n<figure><figcaption>before</figcaption><div class=\"music\">" + system.before +
            "</div></figure>\n<figure><figcaption>after</figcaption><div class=\"music\">" + system.after +
            "</div></figure></section>\n";
  }
  if (engraving.left > 0) {
    html += "<p class=\"hint\">" + Counted(engraving.left, "more system") + " changed; --pictures " +
            std::to_string(options.pictures + engraving.left) + " draws all.</p>\n";
  }
  return html + "<p class=\"hint\">Engraved by Verovio " + Escaped(engraving.version) + ".</p>\n";
}

std::string List(const char* title, const std::vector<std::string>& texts) {
  if (texts.empty()) return {};
  std::string html = std::string("<h3>") + title + "</h3>\n<ul>\n";
  for (const std::string& text : texts) html += "<li>" + Escaped(text) + "</li>\n";
  return html + "</ul>\n";
}

}  // namespace

std::string HtmlSection(const Score& score, const ScoreReport& report, const RunOptions& options) {
  const auto rests = [](long count, const char* where) {
    return "<span><b>" + std::to_string(count) + "</b> rest" + (count == 1 ? "" : "s") + where + "</span>";
  };
  std::string html = "<article>\n<h2>" + Escaped(report.file) + "</h2>\n<p class=\"numbers\"><span>" +
                     Escaped(report.title) + "</span>" + rests(report.RestsIn(), " in") +
                     rests(report.RestsOut(), " out") + "<span><b>" + std::to_string(report.selected - report.changed) +
                     "</b> of " + std::to_string(report.selected) + " staff-measures kept</span></p>\n";
  if (!report.error.empty()) html += "<p class=\"error\">" + Escaped(report.error) + "</p>\n";
  html += Grid(score, report) + Reasons(score, report) + List("Alerts", report.alerts) +
          List("Warnings", report.warnings) + Pictures(score, report, options);
  return html + "</article>\n";
}

std::string HtmlFailure(const std::string& file, const std::string& error) {
  return "<article class=\"failed\">\n<h2>" + Escaped(file) + "</h2>\n<p>" + Escaped(error) + "</p>\n</article>\n";
}

std::string HtmlPage(Purpose purpose, const std::string& summary, const std::string& sections) {
  const std::string title = purpose == Purpose::kOther ? "What the extension did" : "Whole-measure rests";
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
         title + "</title>\n<style>\n" + kReportStyle + "</style>\n</head>\n<body>\n<header><h1>" + title + "</h1><p>" +
         Escaped(summary) + "</p></header>\n<main>\n" + sections + "</main>\n<script>\n" + kReportScript +
         "</script>\n</body>\n</html>\n";
}

}  // namespace sok
