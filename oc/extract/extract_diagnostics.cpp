// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <locale>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "oc/alphabet.h"
#include "oc/extract_model.h"
#include "rz/affine_rectangle.h"
#include "rz/angle.h"
#include "rz/cx_align.h"
#include "rz/diag.h"
#include "rz/graphics.h"
#include "rz/line.h"
#include "rz/rigid.h"
#include "rz/vector.h"

namespace {

void writeParams(std::ostream& text, const rz_OCExtractRunParams& params) {
  text << "Runtime Params" << std::endl;
  text << "==============" << std::endl;
  text << "Accept Thresh = " << params.acceptThresh << std::endl;
  text << "Confusion Thresh = " << params.confusionThresh << std::endl;
  text << "Overlap =" << params.overlap << std::endl;
}

void writeResult(std::ostream& text, const std::string& name, const rz_OCExtractCharResult& r) {
  text << (r.found() ? "Found" : "Could not find") << " Char Model '" << name << "'" << std::endl;
  for (rzLong k = 0; k < r.numInstances(); ++k) {
    const rzXform<2> pose = r.pose(k);
    text << " \t Instance #" << k << " \t Score= " << r.score(k)
         << " \t Angle= " << rzDegree(pose.xRot()).toDouble() << " \t Scale=" << pose.xScale()
         << std::endl;
  }
  text << std::endl;
}

// The other angles at which a character of this symmetry looks the same.
std::vector<double> equalAngles(rz_OCExtractDefs::Symmetry symmetry) {
  if (symmetry == rz_OCExtractDefs::eAnyAngleSymmetry) return {180.0, 90.0, 270.0};
  if (symmetry == rz_OCExtractDefs::eRot180Symmetry) return {180.0};
  return {};
}

// The instance's box, its direction, and its other equal directions as thinner ticks.
rzGraphicList drawInstance(const rz_OCExtractCharResult& r, rzLong k, double tickLength) {
  constexpr rzLong kThickPen = 2;
  constexpr rzLong kSolidPen = 0;
  using Box = rzGraphicSimple<rzAffineRectangle>;
  using Tick = rzGraphicSimple<rzLineSeg>;
  const rzLineSeg tick(rzVector<2>(0.0, 0.0), rzVector<2>(tickLength, 0.0));
  const rzXform<2> pose = r.pose(k);
  rzGraphicList list;
  list.append(new Box(r.affRect(k), rzColor::greenColor()), true);
  for (const double angle : equalAngles(r.symmetry())) {
    const rz2Rigid turn(rzDegree(angle), rzVector<2>(0.0, 0.0));
    list.append(new Tick(tick.map(pose * turn.linear()), rzColor::blueColor()), true);
  }
  const rzGraphicProps thick(rzColor::greenColor(), kThickPen, kSolidPen, false);
  list.append(new Tick(tick.map(pose), thick), true);
  return list;
}

void recordInstances(const rzOCModel& character, const rz_OCExtractCharResult& r,
                     rzDiagObject* diag) {
  const rzPelRect area = character.imageArea();
  const double tickLength = 0.5 * std::min(area.width(), area.height());
  for (rzLong k = 0; k < r.numInstances(); ++k) {
    std::ostringstream title;
    title.imbue(std::locale::classic());
    title << "Character '" << character.name() << "' Result #" << k << std::ends;
    rf_AddGraphics(diag, drawInstance(r, k, tickLength), title.str(),
                   rzDiagDefs::eClientCoordinates);
  }
}

}  // namespace

void rz_OCExtractModel::drawTrainDiags_(const rzPtrHandle_const<rzOCAlphabet>& /*alphabet*/,
                                        const rzPelBuffer_const<unsigned char>& /*image*/,
                                        const std::vector<rzLong>& /*keys*/, rzDiagObject* /*diag*/,
                                        rzULong /*flags*/) {}

void rz_OCExtractModel::drawRuntimeDiags_(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                                          const rzPelBuffer_const<unsigned char>& /*image*/,
                                          const rz_OCExtractRunParams& runParams,
                                          rz_OCExtractStringResult& result, rzDiagObject* diag,
                                          rzULong flags) {
  if (!diag) return;
  if ((flags & rzDiagDefs::eInputs) != 0) writeParams(diagText_, runParams);
  if ((flags & rzDiagDefs::eResults) == 0) return;

  const auto& found = result.uniqueCharResults();
  diagText_ << std::endl << "Final Results" << std::endl;
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (patterns_[i]) writeResult(diagText_, alphabet->character(keys_[i])->name(), *found[i]);
  }
  diagText_ << std::ends;
  rf_AddText(diag, diagText_.str(), "Result details");
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (patterns_[i]) recordInstances(*alphabet->character(keys_[i]), *found[i], diag);
  }
}
