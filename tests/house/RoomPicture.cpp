#include "house/RoomPicture.h"

#include <algorithm>
#include <vector>

namespace vessant::test {
namespace {

constexpr int kBoxWidth = 128;
constexpr int kBoxHeight = 34;
constexpr int kColumnStep = 168;
constexpr int kFloorStep = 78;
constexpr int kMargin = 24;
constexpr int kArrowHead = 7;

/// Where each room stands: the longest way down is the middle column, the others lie beside it,
/// left and right in turn.
class Plan {
 public:
  explicit Plan(const RoomArrows& arrows)
      : floors_(floorsOf(arrows)), direct_(directArrows(arrows)) {
    for (const auto& [room, floor] : floors_) top_ = std::max(top_, floor);
    placeLongestWay();
    for (const auto& [room, floor] : floors_) {
      if (columns_.contains(room)) continue;
      const int side = static_cast<int>(beside_++);
      columns_[room] = side % 2 == 0 ? side / 2 + 1 : -(side / 2 + 1);
    }
    for (const auto& [room, column] : columns_) {
      left_ = std::min(left_, column);
      right_ = std::max(right_, column);
    }
  }

  [[nodiscard]] const RoomArrows& direct() const { return direct_; }
  [[nodiscard]] int width() const {
    return 2 * kMargin + kBoxWidth + (right_ - left_) * kColumnStep;
  }
  [[nodiscard]] int height() const { return 2 * kMargin + kBoxHeight + top_ * kFloorStep; }
  [[nodiscard]] int centre(const std::string& room) const {
    return kMargin + kBoxWidth / 2 + (columns_.at(room) - left_) * kColumnStep;
  }
  [[nodiscard]] int upperEdge(const std::string& room) const {
    return kMargin + (top_ - floors_.at(room)) * kFloorStep;
  }

 private:
  void placeLongestWay() {
    for (int floor = top_; floor >= 0; --floor) {
      const auto isNext = [&](const auto& entry) {
        return entry.second == floor &&
               (way_.empty() || direct_.at(way_.back()).contains(entry.first));
      };
      const auto next = std::find_if(floors_.begin(), floors_.end(), isNext);
      if (next == floors_.end()) continue;
      way_.push_back(next->first);
      columns_[next->first] = 0;
    }
  }

  std::map<std::string, int> floors_;
  RoomArrows direct_;
  std::map<std::string, int> columns_;
  std::vector<std::string> way_;
  std::size_t beside_ = 0;
  int top_ = 0;
  int left_ = 0;
  int right_ = 0;
};

std::string attribute(const char* name, int value) {
  return std::string(" ") + name + "=\"" + std::to_string(value) + "\"";
}

std::string box(const Plan& plan, const std::string& room) {
  const int x = plan.centre(room);
  const int y = plan.upperEdge(room);
  return "<rect" + attribute("x", x - kBoxWidth / 2) + attribute("y", y) +
         attribute("width", kBoxWidth) + attribute("height", kBoxHeight) + " rx=\"5\"/>\n<text" +
         attribute("x", x) + attribute("y", y + kBoxHeight / 2 + 5) + ">" + room + "</text>\n";
}

std::string arrow(const Plan& plan, const std::string& from, const std::string& to) {
  return "<line" + attribute("x1", plan.centre(from)) +
         attribute("y1", plan.upperEdge(from) + kBoxHeight) + attribute("x2", plan.centre(to)) +
         attribute("y2", plan.upperEdge(to) - kArrowHead) + "/>\n";
}

std::string frame(const Plan& plan) {
  const std::string width = std::to_string(plan.width());
  const std::string height = std::to_string(plan.height());
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
         "\" viewBox=\"0 0 " + width + " " + height +
         "\">\n"
         "<style>\n"
         "  svg { background: #fff; }\n"
         "  rect { fill: #eef3f8; stroke: #37597a; }\n"
         "  text { font: 14px sans-serif; text-anchor: middle; fill: #14222f; }\n"
         "  line { stroke: #37597a; stroke-width: 1.4; marker-end: url(#head); }\n"
         "</style>\n"
         "<marker id=\"head\" viewBox=\"0 0 8 8\" refX=\"1\" refY=\"4\" markerWidth=\"7\" "
         "markerHeight=\"7\" orient=\"auto\"><path d=\"M0 0 L8 4 L0 8 Z\" fill=\"#37597a\"/>"
         "</marker>\n";
}

}  // namespace

std::string roomPicture(const RoomArrows& arrows) {
  const Plan plan(arrows);
  std::string picture = frame(plan);
  for (const auto& [room, below] : plan.direct()) {
    for (const std::string& other : below) picture += arrow(plan, room, other);
  }
  for (const auto& [room, below] : plan.direct()) picture += box(plan, room);
  return picture + "</svg>\n";
}

}  // namespace vessant::test
