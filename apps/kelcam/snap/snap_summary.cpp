// snap_summary.cpp
// What snap reports of several cameras at the end.
#include "snap/snap_summary.h"

#include "base/interrupt.h"
#include "base/text_table.h"
#include "snap/snap_camera.h"

namespace Kelcam {
namespace {

using Cells = std::vector<std::string>;

constexpr double kBytesPerMegabyte = 1e6;

const SnapCamera& CameraOf(const CameraGroup::Member& member) { return static_cast<const SnapCamera&>(*member.run); }

std::string Megabytes(double bytes) { return Fixed(bytes / kBytesPerMegabyte, 1); }

std::string Failures(const SnapFigures& figures) {
  std::uint64_t sum = 0;
  for (const auto& [code, count] : figures.FailuresByCode()) sum += count;
  return std::to_string(sum) + CountsByCode(figures.FailuresByCode());
}

Cells RowOf(const Options& options, const CameraGroup::Member& member) {
  if (!member.run) return {CellOf(member.name), "-", "-", "not run", "-", "-", "-", "-"};
  const SnapCamera& camera = CameraOf(member);
  const SnapFigures& figures = camera.Figures();
  Cells cells{CellOf(member.name), std::to_string(camera.Taken()) + " of " + std::to_string(options.images),
              std::to_string(figures.Snaps()), Failures(figures)};
  if (const auto rates = figures.Rates()) {
    cells.insert(cells.end(),
                 {Megabytes(static_cast<double>(rates->first_bytes_per_s)),
                  Megabytes(static_cast<double>(rates->last_bytes_per_s)), Megabytes(rates->mean_bytes_per_s)});
  } else {
    cells.insert(cells.end(), {"-", "-", "-"});
  }
  cells.push_back(Fixed(figures.FramesPerSecond(), 1));
  return cells;
}

Json SummaryOf(const SnapFigures& figures) {
  Json by_code = Json::object();
  for (const auto& [code, count] : figures.FailuresByCode()) by_code[std::to_string(code)] = count;
  Json rates;
  if (const auto known = figures.Rates()) {
    rates = {{"first", known->first_bytes_per_s}, {"last", known->last_bytes_per_s}, {"mean", known->mean_bytes_per_s}};
  }
  return {{"snaps", figures.Snaps()},
          {"failuresByCode", by_code},
          {"streamBytesPerSecond", rates},
          {"framesPerSecond", figures.FramesPerSecond()}};
}

Json DocumentOf(const CameraGroup::Member& member) {
  Json document = {{"camera", member.name}};
  if (member.run) {
    document = CameraOf(member).Document();
    document["summary"] = SummaryOf(CameraOf(member).Figures());
  }
  if (member.fault) document["error"] = ToJson(*member.fault);
  return document;
}

}  // namespace

std::string SnapSummary(const Options& options, const CameraGroup& group) {
  std::vector<Cells> rows{
      {"CAMERA", "PICTURES", "SNAPS", "FAILURES", "MB/S FIRST", "MB/S LAST", "MB/S MEAN", "FRAMES/S"}};
  for (const CameraGroup::Member& member : group.Members()) rows.push_back(RowOf(options, member));
  return TextTable(rows);
}

Json SnapDocument(const CameraGroup& group) {
  Json cameras = Json::array();
  for (const CameraGroup::Member& member : group.Members()) cameras.push_back(DocumentOf(member));
  return {{"cameras", cameras}, {"interrupted", Interrupted()}};
}

}  // namespace Kelcam
