// vimba_imaging_device_impl.h
// Everything that belongs to one camera, as one object: the parts that own it, and what goes on between them.
#pragma once

#include <cstdint>
#include <memory>

#include "VimbaC.h"
#include "acquisition/callback_gate.h"
#include "acquisition/frame_queue.h"
#include "acquisition/frame_receiver.h"
#include "acquisition/frame_ring.h"
#include "acquisition/snap_cycle.h"
#include "bcolorconverter.h"
#include "berror.h"
#include "bimagingdeviceimpl.h"
#include "bstopwatch.h"
#include "camera/image_format.h"
#include "controls/camera_controls.h"
#include "controls/vimba_trigger.h"
#include "stream/bandwidth_partners.h"
#include "stream/frame_rate.h"
#include "stream/stream_rate.h"
#include "vimba/vimba_camera.h"

class BBaseAoi;
class BLogCollector;

// A coordinator: each part owns its fields and knows nothing of this object; what one part reports to another goes
// through here. [host thread] unless an operation says otherwise.
class BVimbaImagingDeviceImpl final : public BImagingDeviceImpl,
                                      private FrameReceiver::Listener,
                                      private SnapCycle::Stream,
                                      private BandwidthPartners::Listener {
 public:
  using BFrameQueue = ::BFrameQueue;

  BVimbaImagingDeviceImpl();
  ~BVimbaImagingDeviceImpl() override;

  const wchar_t* ApiName() const override;
  const wchar_t* Identifier() const override;
  BSize ImageSize(bool& rotated) const override;
  bool FramesPerSecond(double& frames_per_second) override;
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

  int MaxShutterForFast() const { return m_frame_rate.MaxShutterForFast(); }
  bool HasWhiteBalance() const { return m_controls.HasWhiteBalance(); }
  // Does nothing on a monochrome camera and while a continuous run lasts.
  bool SetColorMode(bool on);
  // The host may ask for it; there is nothing to refresh.
  void Refresh() {}

  // [any thread]
  void StartSnap(bool one_shot) { m_snap_cycle.StartSnap(one_shot); }
  BError Snap(BBaseAoi* aoi, std::uint32_t timeout_ms, std::int64_t unused);
  void StopSnap() { m_snap_cycle.StopSnap(); }
  std::uint64_t LatchCameraTimestamp() { return m_snap_cycle.LatchCameraTimestamp(); }

  // [any thread]
  std::int64_t GetBandwidth() const { return m_stream_rate.GetBandwidth(); }
  [[nodiscard]] VmbError_t SetBandwidth(std::int64_t bytes_per_s) { return m_stream_rate.SetBandwidth(bytes_per_s); }
  bool AddBandwidthPartner(BVimbaImagingDeviceImpl* other);
  bool RemoveBandwidthPartner(BVimbaImagingDeviceImpl* other);

  // [Vimba thread]
  void OnFrameExt(VmbFrame_t* frame) { m_receiver.OnFrameExt(frame); }
  void OnFrame(VmbFrame_t* frame) { m_receiver.OnFrame(frame); }

 private:
  // The steps of Initialize, in their order.
  bool HasOurApi() const;
  bool OpenByProfile(BLogCollector& log);
  bool InitPixelFormatAndGeometry(BLogCollector& log);
  bool StartCapture(BLogCollector& log);
  void CreateControls();
  void ApplyProfileLimits();
  void ReadRotation();
  void ReadCameraFrequency();
  void ConfigureTrigger();

  // The steps of the destructor, in their order.
  void SaveWhiteBalance();
  // True when the library has given the frames back.
  bool CloseCamera();

  void OnLostFrame() override;         // [Vimba thread]
  void OnPartnerLostFrame() override;  // [Vimba thread]
  void BeforeAcquisition(BLogCollector& log) override;
  void AfterAcquisition(std::int32_t snap_error, BLogCollector& log) override;

  // Each part comes after those that it is given.
  VimbaCamera m_camera;
  ImageFormat m_image_format{m_camera};
  BStopWatch m_snap_stop_watch{true};
  BFrameQueue m_frame_queue;
  FrameRing m_frame_ring;
  FrameReceiver m_receiver{m_camera, m_snap_stop_watch, m_frame_ring, m_frame_queue, *this};
  SnapCycle m_snap_cycle{m_camera, m_snap_stop_watch, m_frame_queue, m_receiver, *this};
  StreamRate m_stream_rate{m_camera, m_snap_cycle.SnapMutex()};
  BandwidthPartners m_partners{m_stream_rate, *this};
  FrameRate m_frame_rate{m_camera};
  CameraControls m_controls{*this};
  CallbackGate m_gate{this, m_frame_ring.Records()};
  std::unique_ptr<BVimbaTrigger> m_trigger;
  BSmartRef<BColorConverter> m_color_converter;
  // Quarter turns: 1 clockwise, -1 counter-clockwise.
  int m_rotation = 0;
};
