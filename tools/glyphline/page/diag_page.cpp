// SPDX-License-Identifier: Apache-2.0
#include "page/diag_page.h"

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>

#include "page/outline.h"
#include "page/page_files.h"
#include "page/png.h"
#include "rz/xform_linear.h"

namespace glyphline {
namespace {

using Json = nlohmann::ordered_json;
using Image = rzPelBuffer_const<unsigned char>;

// Tenths of a thousandth of a pel, as in the command's JSON.
double rounded(double value) {
  constexpr double kPlaces = 1e4;
  return std::round(value * kPlaces) / kPlaces;
}

std::string htmlOf(const rzColor& color) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text = "#";
  for (const unsigned share : {color.red(), color.green(), color.blue()}) {
    text += kDigits[share >> 4U];
    text += kDigits[share & 15U];
  }
  return text;
}

/// The pictures of a page, each kept once however many records show it.
class Pictures {
 public:
  std::size_t indexOf(const Image& image) {
    const Key key{image.pointToPel(image.window().x(), image.window().y()), image.rowUpdate(),
                  image.width(), image.height()};
    const auto [at, isNew] = known_.try_emplace(key, json_.size());
    if (isNew) {
      json_.push_back(
          {{"width", image.width()}, {"height", image.height()}, {"png", base64Of(pngOf(image))}});
    }
    return at->second;
  }

  const Json& json() const { return json_; }

 private:
  // Equal for views of the same pels; the records keep these alive.
  using Key = std::tuple<const unsigned char*, std::ptrdiff_t, rzLong, rzLong>;

  std::map<Key, std::size_t> known_;
  Json json_ = Json::array();
};

Json jsonOf(const rzGraphic& graphic, const Outline& outline) {
  Json json{{"kind", outline.kind},
            {"color", htmlOf(graphic.color())},
            {"width", graphic.props().penWidth()},
            {"closed", outline.isClosed},
            {"filled", outline.isFilled},
            {"strokes", Json::array()}};
  for (const auto& stroke : outline.strokes) {
    Json points = Json::array();
    for (const rzVector<2>& p : stroke) {
      points.push_back(rounded(p.x()));
      points.push_back(rounded(p.y()));
    }
    json["strokes"].push_back(std::move(points));
  }
  return json;
}

// The graphics as they lie in `image`, or in coordinates of their own when it is null.
Json layersOf(const rzDiagRecord& record, const Image* image) {
  Json layers = Json::array();
  for (const rzDiagGraphics& graphics : record.graphics()) {
    const bool isMapped =
        image != nullptr && graphics.coordinateSystem == rzDiagDefs::eClientCoordinates;
    rzPtrHandle_const<rz2XformBase> imageFromClient;
    if (isMapped) imageFromClient = image->imageFromClientXformBase();
    Json shapes = Json::array();
    for (const auto& graphic : graphics.list.items()) {
      const Outline outline = outlineOf(*graphic, isMapped ? &*imageFromClient : nullptr);
      if (!outline.strokes.empty()) shapes.push_back(jsonOf(*graphic, outline));
    }
    layers.push_back({{"label", graphics.label}, {"shapes", std::move(shapes)}});
  }
  return layers;
}

// The six numbers of the client coordinates from the pel coordinates, row by row; null when they
// are the same or when no six numbers tell.
Json clientFromPel(const Image& image) {
  if (!image.clientFromImageXformBase()->isLinear()) return nullptr;
  const rzXform<2>& xform = image.clientFromImageXform();
  if (xform == rzXform<2>()) return nullptr;
  const rzMatrix<2>& m = xform.matrix();
  return {m(0, 0), m(0, 1), xform.trans().x(), m(1, 0), m(1, 1), xform.trans().y()};
}

Json viewOf(const rzDiagRecord& record, const rzDiagImage& shown, Pictures& pictures) {
  return {{"name", shown.name},
          {"picture", pictures.indexOf(shown.image)},
          {"x", shown.image.window().x()},
          {"y", shown.image.window().y()},
          {"client", clientFromPel(shown.image)},
          {"layers", layersOf(record, &shown.image)}};
}

/// The record that record `index` belongs to; null for one at the top.
const rzDiagRecord* ownerOf(const rzDiagObject& diag, rzLong index) {
  const rzLong level = diag.diagRecord(index)->level();
  for (rzLong i = index - 1; i >= 0; --i) {
    if (diag.diagRecord(i)->level() < level) return diag.diagRecord(i);
  }
  return nullptr;
}

Json viewsOf(const rzDiagObject& diag, rzLong index, Pictures& pictures) {
  const rzDiagRecord& record = *diag.diagRecord(index);
  Json views = Json::array();
  for (const rzDiagImage& shown : record.images()) {
    views.push_back(viewOf(record, shown, pictures));
  }
  if (!views.empty() || record.graphics().empty()) return views;
  const rzDiagRecord* owner = ownerOf(diag, index);
  if (owner != nullptr && !owner->images().empty()) {
    views.push_back(viewOf(record, owner->images().front(), pictures));
  } else {
    views.push_back({{"name", ""}, {"picture", nullptr}, {"layers", layersOf(record, nullptr)}});
  }
  return views;
}

Json recordsOf(const rzDiagObject& diag, Pictures& pictures) {
  Json records = Json::array();
  for (rzLong i = 0; i < diag.numRecords(); ++i) {
    const rzDiagRecord& record = *diag.diagRecord(i);
    Json texts = Json::array();
    for (const rzDiagText& text : record.texts()) {
      texts.push_back({{"label", text.label}, {"content", text.content}});
    }
    records.push_back({{"title", record.annotation()},
                       {"level", record.level()},
                       {"views", viewsOf(diag, i, pictures)},
                       {"texts", std::move(texts)}});
  }
  return records;
}

Json headOf(const PageHead& head) {
  Json json{{"title", head.title}, {"facts", Json::array()}, {"meanings", Json::object()}};
  if (head.passes) json["passes"] = *head.passes;
  for (const auto& [name, value] : head.facts) json["facts"].push_back({name, value});
  for (const auto& [shape, meaning] : head.meanings) json["meanings"][shape] = meaning;
  return json;
}

// Within a script element only "<" could end the element or open a comment.
std::string scriptSafe(const Json& json) {
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string safe;
  safe.reserve(text.size());
  for (const char c : text) {
    if (c == '<') {
      safe += "\\u003c";
    } else {
      safe += c;
    }
  }
  return safe;
}

// Puts the parts where the template names them, {{so}}. What a part holds is not looked at again.
std::string filled(std::string_view page, const std::map<std::string, std::string_view>& parts) {
  std::string text;
  for (std::size_t at = 0; at < page.size();) {
    const std::size_t open = page.find("{{", at);
    const std::size_t close = page.find("}}", open);
    text += page.substr(at, open - at);
    if (close == std::string_view::npos) break;
    text += parts.at(std::string(page.substr(open + 2, close - open - 2)));
    at = close + 2;
  }
  return text;
}

}  // namespace

std::string diagPage(const rzDiagObject& diag, const PageHead& head) {
  Pictures pictures;
  Json data{{"head", headOf(head)}};
  data["records"] = recordsOf(diag, pictures);
  data["pictures"] = pictures.json();
  const std::string text = scriptSafe(data);
  return filled(kPageHtml, {{"style", kPageCss}, {"data", text}, {"script", kPageJs}});
}

}  // namespace glyphline
