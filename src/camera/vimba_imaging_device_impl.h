// vimba_imaging_device_impl.h
// Everything that belongs to one camera: handle, frames, queue, controls, trigger, stream rate, snap state.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

#include "VimbaC.h"
#include "acquisition/frame_blocks.h"
#include "acquisition/frame_copy.h"
#include "acquisition/frame_queue.h"
#include "acquisition/workers_in_flight.h"
#include "bcolorconverter.h"
#include "berror.h"
#include "bimagingdeviceimpl.h"
#include "bpoint.h"
#include "bstopwatch.h"
#include "bstring.h"
#include "controls/vimba_trigger.h"
#include "stream/bandwidth_limits.h"

class BBaseAoi;
class BLogCollector;

// Its members stand in the folders of their subsystems: opening and configuration in camera/, frames and snaps in
// acquisition/, the stream rate in stream/. [host thread] unless a member says otherwise.
class BVimbaImagingDeviceImpl final : public BImagingDeviceImpl {
 public:
  using BFrameQueue = ::BFrameQueue;

  BVimbaImagingDeviceImpl();
  ~BVimbaImagingDeviceImpl() override;

  const wchar_t* ApiName() const override;
  const wchar_t* Identifier() const override;
  BSize ImageSize(bool& rotated) const override;
  bool FramesPerSecond(double& frames_per_second) override;  // stream/frame_rate.cpp
  // Opens, configures and starts the camera that the profile names. On failure the destructor closes what was opened.
  // Throws BError 8420 for a rotation that the driver does not have.
  bool Initialize(BSmartRef<BCamProfile> profile) override;
  bool IsColor() const override;
  bool SetWhiteBalanceBlue(int value, bool color) override;
  bool SetWhiteBalanceRed(int value, bool color) override;
  int ColorBlueBalance() const override;
  int ColorRedBalance() const override;
  bool IsOpen() const override;
  BImagingDeviceTrigger* Trigger() const override;

  int MaxShutterForFast() const { return m_max_shutter_for_fast; }
  bool HasWhiteBalance() const;
  bool SetColorMode(bool on);
  void Refresh() {}

  // acquisition/snap_cycle.cpp
  void StartSnap(bool one_shot);
  BError Snap(BBaseAoi* aoi, std::uint32_t timeout_ms, std::int64_t unused);
  void StopSnap();
  std::uint64_t LatchCameraTimestamp();

  // stream/bandwidth_control.cpp
  std::int64_t GetBandwidth() const;
  VmbError_t SetBandwidth(std::int64_t rate);
  bool AddBandwidthPartner(BVimbaImagingDeviceImpl* other);
  bool RemoveBandwidthPartner(BVimbaImagingDeviceImpl* other);

  // acquisition/frame_handlers.cpp [Vimba thread]
  void OnFrameExt(VmbFrame_t* frame);
  void OnFrame(VmbFrame_t* frame);

 private:
  static constexpr std::size_t kFrames = 10;
  static constexpr std::uint64_t kNoTimestamp = ~std::uint64_t{0};
  static constexpr std::uint64_t kNoFrameId = ~std::uint64_t{0};

  struct WhiteBalance {
    int blue = 100;
    int red = 100;
  };

  WString Prefix() const;

  // camera/camera_opening.cpp
  bool OpenCamera(const WString& text);
  bool OpenBySerial(const WString& serial_number);
  bool OpenOneOf(const std::vector<VmbCameraInfo_t>& cameras, const WString& serial_number);
  bool OpenByUniqueId(const WString& unique_id);
  bool OpenByAddress();
  static VmbHandle_t OpenAndQuery(const WString& id, VmbCameraInfo_t& camera);
  void Adopt(VmbHandle_t handle, const WString& unique_id, const VmbCameraInfo_t& camera);

  // camera/vimba_imaging_device_impl.cpp: the steps of Initialize
  bool HasOurApi() const;
  bool OpenByProfile(BLogCollector& log);
  bool StartCapture(BLogCollector& log);
  void CreateColorConverter();
  void CreateControls();
  void ReadRotation();
  void ConfigureTrigger();
  void SaveWhiteBalance();
  void CloseCamera();

  // camera/pixel_format_and_geometry.cpp, camera/control_settings.cpp
  bool ReadSensorType();
  bool InitPixelFormatAndGeometry(BLogCollector& log);
  bool SetPixelFormats(BLogCollector& log);
  bool ProveColorFormat();
  bool SetBinning();
  bool SetChipRectangle();
  bool ApplyColorMode(const BString& format, const WhiteBalance& balance, bool color);
  void ApplyProfileLimits();
  void ApplyStartValues();
  void ReadWhiteBalance();
  int BayerOrder() const;
  bool ReadIntKey(const WString& key, int& value, int default_value) const;
  bool SetBalance(NBoard::CONTROLTYPE type, int WhiteBalance::*part, int value, bool color);

  // acquisition/frame_ring.cpp
  bool AnnounceFrames();
  bool FrameQueueFill(BLogCollector& log);
  bool RequeueFrames(BLogCollector& log);
  VmbError_t ReQueueFrame(VmbFrame_t* frame);  // [Vimba thread, worker]
  void FreeFrames();

  // acquisition/frame_handlers.cpp [Vimba thread, worker]
  static void process_frame_lambda(VmbFrame_t* frame, BVimbaImagingDeviceImpl* device,
                                   BFrameQueue::Acquisition acquisition);
  class FrameInHand;
  void HandleFrame(VmbFrame_t* frame, BFrameQueue::Acquisition acquisition);
  void StartWorker(VmbFrame_t* frame, BFrameQueue::Acquisition acquisition);
  BSmartRef<BFrameQueue::BFrame> CopyOf(const VmbFrame_t& frame);
  void PushFailure(BFrameQueue::Acquisition acquisition, const wchar_t* text);

  // acquisition/snap_cycle.cpp
  void SetAcquisitionMode(bool one_shot, BLogCollector& log);
  void CopyToAoi(const BFrameQueue::BFrame& frame, BBaseAoi& aoi) const;
  bool TriggerIsExternal() const;
  void LogReceivedFrames(BLogCollector& log) const;

  // stream/bandwidth_control.cpp
  void InitializeBandwidthRange(BLogCollector& log);
  void SynchBandwidth(BLogCollector& log);
  void AfterSnap(BLogCollector& log);
  VmbError_t ChangeBandwidth(double factor);
  VmbError_t SetBandwidthClamped(std::int64_t rate);
  void AbortPartners();  // [Vimba thread]
  void JoinPartners();
  void LeavePartners();
  bool Unlist(BVimbaImagingDeviceImpl* other);  // the partner mutex is held

  // Written while opening and configuring, before the first callback; constant afterwards.
  VmbHandle_t m_camera = nullptr;
  WString m_unique_id;
  WString m_identifier;
  // The host thread's.
  BString m_pixel_format;
  BString m_mono_pixel_format;
  BString m_color_pixel_format;
  BSize m_image_size;
  BPoint m_image_offset;
  std::int64_t m_binning_horizontal = 1;
  std::int64_t m_binning_vertical = 1;
  std::int64_t m_payload_size = 0;
  // Each frame is the library's while queued, one handler's between delivery and re-queueing.
  std::array<VmbFrame_t, kFrames> m_frames{};
  // The host thread's.
  int m_rotation = 0;
  int m_max_shutter_for_fast = -1;
  bool m_is_color = false;
  WhiteBalance m_current_balance;
  WhiteBalance m_color_balance;
  WhiteBalance m_mono_balance;
  bool m_yuv_stretch = false;
  bool m_color_mode_on = false;
  BSmartRef<BColorConverter> m_color_converter;
  double m_camera_frequency = -1.0;
  // Read by other threads than the one that writes them.
  std::atomic<bool> m_continuous_mode{false};
  std::atomic<std::int32_t> m_last_snap_error{0};
  BStopWatch m_snap_stop_watch{true};
  std::unique_ptr<BVimbaTrigger> m_trigger;  // the host thread's
  BandwidthState m_bandwidth;                // the host thread's
  std::shared_ptr<FrameBlocks> m_frame_blocks = std::make_shared<FrameBlocks>();
  BFrameQueue m_frame_queue;
  std::atomic<std::uint64_t> m_frame_context_counter{0};
  std::vector<std::uint64_t> m_received_frame_ids;                  // under m_snap_mutex
  std::atomic<std::uint64_t> m_start_scan_timestamp{kNoTimestamp};  // frames older than this are refused
  std::set<BVimbaImagingDeviceImpl*> m_bandwidth_partners;          // under the process-wide partner mutex
  std::atomic<bool> m_has_partners{false};                          // written under that mutex, read without
  std::recursive_mutex m_snap_mutex;
  WorkersInFlight m_workers;
};
