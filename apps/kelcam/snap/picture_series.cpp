// picture_series.cpp
// The images of one snap command: taken one after the other, written while the next is taken.
#include "snap/picture_series.h"

#include <algorithm>
#include <utility>

#include "base/interrupt.h"
#include "base/utf8.h"
#include "commands/camera_setup.h"
#include "picture/picture.h"
#include "picture/picture_file.h"
#include "picture/raw_frame.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

// Each holds the memory of a picture.
constexpr std::size_t kMostWaitingPictures = 4;

void KeepFirst(std::optional<Fault>& fault, std::optional<Fault> later) {
  if (!fault) fault = std::move(later);
}

}  // namespace

PictureSeries::PictureSeries(const Options& options, const CameraSession& camera, std::optional<int> bayer_order,
                             PlaceOnScreen place)
    : m_options(options),
      m_camera(camera),
      m_pattern(options.pattern, options.format, options.images),
      m_kind(options.raw ? BBaseAoi::eRgb : PictureKind(options, camera.Device())),
      m_kind_name(options.raw ? "raw" : NameOf(m_kind)),
      m_area_text(options.raw ? kRawAreaText : options.area_text),
      m_bayer_order(bayer_order),
      m_details(DetailsOf(camera.Device())),
      m_schedule(options.interval),
      m_lost(options.lost_after),
      m_report(options, m_kind_name, std::move(place)),
      m_writing(kMostWaitingPictures) {}

void PictureSeries::CheckFiles(const Options& options, const BImagingDevice* camera) {
  const FilePattern pattern(options.pattern, options.format, options.images);
  if (pattern.IsStandardOutput() || pattern.NamesCamera() != (camera != nullptr)) return;
  const auto file = [&](int number, int second) {
    PictureIdentity picture = camera ? IdentityOf(*camera) : PictureIdentity();
    picture.number = number;
    picture.time += std::chrono::seconds(second);
    return pattern.File(picture);
  };
  const bool folder_has_time = file(1, 0).parent_path() != file(1, 1).parent_path();
  if (!folder_has_time) CheckFolder(file(1, 0));
  if (!options.no_clobber || pattern.HasTime()) return;
  for (int number = 1; number <= options.images; ++number) CheckIsNew(file(number, 0));
}

void PictureSeries::TakeSingle(TriggerChoice trigger) {
  m_figures.Start();
  for (int number = 1; number <= m_options.images && WaitForTurn(number); ++number) {
    TakeImage(number, [&](TakenImage& image) {
      const Clock::time_point start = Clock::now();
      AcquisitionRun run(m_camera, true, trigger);
      image.result.fault = run.StartFault();
      Snap(run, image);
      image.result.time = Clock::now() - start;
      NoteRate(image);
      KeepFirst(image.result.fault, run.Stop());
    });
  }
  Finish();
}

void PictureSeries::TakeContinuous(TriggerChoice trigger) {
  m_figures.Start();
  std::optional<AcquisitionRun> run;
  const auto start = [&] { return run.emplace(m_camera, false, trigger).StartFault(); };
  if (!m_options.keep_going) m_run_fault = start();
  for (int number = 1; !m_run_fault && number <= m_options.images && WaitForTurn(number); ++number) {
    TakeImage(number, [&](TakenImage& image) {
      if (!run) image.result.fault = start();
      const Clock::time_point begin = Clock::now();
      Snap(*run, image);
      image.result.time = Clock::now() - begin;
      NoteRate(image);
      if (run->StartFault()) run.reset();
    });
  }
  if (run) KeepFirst(m_run_fault, run->Stop());
  Finish();
}

void PictureSeries::Finish() {
  m_writing.Finish();
  if (!m_run_fault) return;
  m_figures.AddRunFault(*m_run_fault);
  m_report.AddRunFault(*m_run_fault);
}

bool PictureSeries::IsOver() const { return m_is_over || m_run_fault || Interrupted(); }

bool PictureSeries::WaitForTurn(int number) {
  if (!m_schedule.WaitForNext([this] { return IsOver(); })) return false;
  if (const std::int64_t missed = m_schedule.Missed()) {
    const std::string text = "image " + std::to_string(number) +
                             " is late: " + Counted(static_cast<std::uint64_t>(missed), "turn") +
                             " of --interval passed before it";
    m_writing.Push([this, text] { m_report.Notice(text); });
  }
  return true;
}

template <class Take>
void PictureSeries::TakeImage(int number, const Take& take) {
  for (int tries = 1;; ++tries) {
    TakenImage image;
    image.result.number = number;
    image.result.tries = tries;
    m_report.ShowProgress(number);
    take(image);
    m_figures.AddSnap(image.result.fault, image.rate_bytes_per_s);
    const bool is_lost = EndsForLostCamera(image.result);
    if (image.result.fault && !is_lost && tries <= m_options.retries && !Interrupted()) {
      m_writing.Push([this, result = image.result] { NoticeRetry(result); });
      continue;
    }
    if (image.result.fault && m_options.fail_fast) m_is_over = true;
    m_writing.Push([this, image] { FinishImage(image); });
    return;
  }
}

// A new area for each image: no picture of an earlier one can be taken for it.
void PictureSeries::Snap(AcquisitionRun& run, TakenImage& image) {
  image.area = BSmartRef<BBaseAoi>(new BBaseAoi(m_kind, Wide(m_area_text)));
  if (!image.result.fault) image.result.fault = run.Snap(*image.area, m_options.timeout);
  // No two images have the same time: it may be all that their names differ in.
  const std::chrono::system_clock::time_point not_before = m_last_arrival + std::chrono::milliseconds(1);
  image.result.arrived = std::max(std::chrono::system_clock::now(), not_before);
  m_last_arrival = image.result.arrived;
}

bool PictureSeries::EndsForLostCamera(const ImageResult& result) {
  if (!m_lost.IsLostAfter(result.fault && m_camera.LooksGone())) return false;
  m_run_fault = m_lost.AsFault();
  return true;
}

void PictureSeries::NoteRate(TakenImage& image) {
  if (m_options.cameras.size() < 2) return;
  const CallWatch::Call call(m_camera.Watch(), Operation::kControls);
  image.rate_bytes_per_s = m_camera.Device().GetBandwidth();
}

void PictureSeries::NoticeRetry(const ImageResult& result) {
  m_report.Notice("image " + std::to_string(result.number) + " is tried again (" + std::to_string(result.tries) +
                  " of " + std::to_string(m_options.retries) + "): " + result.fault->Sentence());
}

void PictureSeries::FinishImage(TakenImage image) {
  if (!image.result.fault) {
    const Clock::time_point start = Clock::now();
    try {
      Write(image);
    } catch (...) {
      image.result.fault = FaultOfCurrentException();
      // What follows on a broken stream reaches nobody.
      if (m_options.fail_fast || m_pattern.IsStandardOutput()) m_is_over = true;
    }
    image.result.writing = Clock::now() - start;
  }
  m_report.Add(std::move(image.result));
}

void PictureSeries::Write(TakenImage& image) {
  PictureDetails details = m_details;
  details.time = image.result.arrived;
  Pixels pixels = PixelsOf(*image.area);
  std::optional<RawFrame> frame;
  if (m_options.raw) {
    frame = RawFrameOf(*image.area->Rgb(), m_bayer_order);
    details.bayer_order = frame->bayer_order;
    pixels = frame->View();
  }
  image.result.size = pixels.size;
  const std::vector<std::uint8_t> bytes = Encode(pixels, m_pattern.Format(), details);
  if (m_pattern.IsStandardOutput()) {
    image.result.file = m_pattern.Text();
    return WriteToStandardOutput(bytes);
  }
  const std::filesystem::path file =
      m_pattern.File({image.result.number, details.time, details.serial, details.camera});
  image.result.file = Utf8(file);
  WritePictureFile(file, bytes, m_options.no_clobber ? ExistingFile::kStays : ExistingFile::kIsReplaced);
}

}  // namespace Kelcam
