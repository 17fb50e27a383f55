// SPDX-License-Identifier: Apache-2.0
#include "report_json.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace glyphline {
namespace {

using Json = nlohmann::ordered_json;

// Tenths of a thousandth of a pel or a degree; more digits only look exact.
double rounded(double value) {
  constexpr double kPlaces = 1e4;
  return std::round(value * kPlaces) / kPlaces;
}

Json jsonOf(const rzVector<2>& v) { return {rounded(v.x()), rounded(v.y())}; }

void addPlace(Json& json, const Place& place) {
  json["origin"] = jsonOf(place.origin);
  json["angle"] = rounded(place.angle);
  json["scale"] = rounded(place.scale);
  json["center"] = jsonOf(place.center);
  for (const rzVector<2>& corner : place.box) json["box"].push_back(jsonOf(corner));
}

void addNoPlace(Json& json) {
  for (const char* name : {"origin", "angle", "scale", "center", "box"}) json[name] = nullptr;
}

Json jsonOf(const LineReport& line, std::size_t index) {
  Json json{{"index", index},
            {"shape", line.shape.isCircular ? "circular" : "straight"},
            {"positions", line.positions},
            {"pose", nullptr}};
  if (line.pose) {
    json["pose"] = {{"x", rounded(line.pose->origin.x())},
                    {"y", rounded(line.pose->origin.y())},
                    {"angle", rounded(line.pose->angle)}};
  }
  return json;
}

Json jsonOf(const PositionReport& position, std::size_t index) {
  Json json{{"index", index},
            {"char", position.character},
            {"key", position.key},
            {"status", nameOf(position.status)},
            {"score", rounded(position.score)},
            {"line", position.line}};
  if (position.place) {
    addPlace(json, *position.place);
  } else {
    addNoPlace(json);
  }
  if (position.uncertainty) {
    json["uncertainty"] = {{"translation", rounded(position.uncertainty->translation)},
                           {"angle", rounded(position.uncertainty->angle)},
                           {"scale", rounded(position.uncertainty->scale)}};
  }
  return json;
}

Json jsonOf(const FoundCharacter& found) {
  Json json{{"char", found.character}, {"key", found.key}, {"symmetry", nameOf(found.symmetry)}};
  if (!found.obstacle.empty()) json["reason"] = found.obstacle;
  json["instances"] = Json::array();
  for (const FoundInstance& instance : found.instances) {
    Json one{{"score", rounded(instance.score)}};
    addPlace(one, instance.place);
    json["instances"].push_back(std::move(one));
  }
  json["time_ms"] = rounded(found.milliseconds);
  return json;
}

// Names can hold any bytes when the alphabet comes from elsewhere.
std::string dumped(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string jsonOf(const ArrangeReport& report) {
  Json json{{"image", report.image},           {"found", report.isFound},
            {"truncated", report.isTruncated}, {"matched", report.matched},
            {"expected", report.expected},     {"verdict", report.passes() ? "pass" : "fail"}};
  json["lines"] = Json::array();
  for (std::size_t i = 0; i < report.lines.size(); ++i) {
    json["lines"].push_back(jsonOf(report.lines[i], i));
  }
  json["positions"] = Json::array();
  for (std::size_t i = 0; i < report.positions.size(); ++i) {
    json["positions"].push_back(jsonOf(report.positions[i], i));
  }
  json["time_ms"] = rounded(report.milliseconds);
  return dumped(json);
}

std::string jsonOf(const FindReport& report) {
  Json json{{"image", report.image}};
  json["characters"] = Json::array();
  for (const FoundCharacter& found : report.characters) {
    json["characters"].push_back(jsonOf(found));
  }
  json["train_ms"] = rounded(report.trainMilliseconds);
  json["search_ms"] = rounded(report.searchMilliseconds);
  json["complete"] = report.isComplete;
  return dumped(json);
}

std::string jsonOfFailure(const std::string& image, const std::string& message) {
  return dumped(Json{{"image", image}, {"found", false}, {"error", message}});
}

}  // namespace glyphline
