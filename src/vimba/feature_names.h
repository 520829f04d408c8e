// feature_names.h
// The camera and system features that the driver uses, by their GenICam names.
#pragma once

namespace Feature {

// The Vimba system.
inline constexpr char kGeVTLIsPresent[] = "GeVTLIsPresent";
inline constexpr char kGeVDiscoveryAllOnce[] = "GeVDiscoveryAllOnce";
inline constexpr char kGeVDiscoveryAllAuto[] = "GeVDiscoveryAllAuto";
inline constexpr char kGeVDiscoveryStatus[] = "GeVDiscoveryStatus";
inline constexpr char kDiscoveryCameraEvent[] = "DiscoveryCameraEvent";
inline constexpr char kDiscoveryCameraIdent[] = "DiscoveryCameraIdent";

// Transport.
inline constexpr char kGevHeartbeatTimeout[] = "GevHeartbeatTimeout";
inline constexpr char kStreamBytesPerSecond[] = "StreamBytesPerSecond";
inline constexpr char kGVSPAdjustPacketSize[] = "GVSPAdjustPacketSize";
inline constexpr char kGVSPPacketSize[] = "GVSPPacketSize";
inline constexpr char kPayloadSize[] = "PayloadSize";
inline constexpr char kGevTimestampControlLatch[] = "GevTimestampControlLatch";
inline constexpr char kGevTimestampValue[] = "GevTimestampValue";

// Image format.
inline constexpr char kSensorType[] = "SensorType";
inline constexpr char kPixelFormat[] = "PixelFormat";
inline constexpr char kBinningHorizontal[] = "BinningHorizontal";
inline constexpr char kBinningVertical[] = "BinningVertical";
inline constexpr char kWidth[] = "Width";
inline constexpr char kHeight[] = "Height";
inline constexpr char kOffsetX[] = "OffsetX";
inline constexpr char kOffsetY[] = "OffsetY";

// Acquisition and trigger.
inline constexpr char kAcquisitionMode[] = "AcquisitionMode";
inline constexpr char kAcquisitionStart[] = "AcquisitionStart";
inline constexpr char kAcquisitionStop[] = "AcquisitionStop";
inline constexpr char kAcquisitionFrameRateLimit[] = "AcquisitionFrameRateLimit";
inline constexpr char kTriggerMode[] = "TriggerMode";
inline constexpr char kTriggerSelector[] = "TriggerSelector";
inline constexpr char kTriggerSource[] = "TriggerSource";
inline constexpr char kTriggerActivation[] = "TriggerActivation";
inline constexpr char kTriggerSoftware[] = "TriggerSoftware";

// Controls.
inline constexpr char kGain[] = "Gain";
inline constexpr char kGainAuto[] = "GainAuto";
inline constexpr char kExposureAuto[] = "ExposureAuto";
inline constexpr char kExposureMode[] = "ExposureMode";
inline constexpr char kExposureTimeAbs[] = "ExposureTimeAbs";
inline constexpr char kBalanceWhiteAuto[] = "BalanceWhiteAuto";
inline constexpr char kBalanceRatioSelector[] = "BalanceRatioSelector";
inline constexpr char kBalanceRatioAbs[] = "BalanceRatioAbs";
inline constexpr char kDeviceTemperatureSelector[] = "DeviceTemperatureSelector";
inline constexpr char kDeviceTemperature[] = "DeviceTemperature";

}  // namespace Feature

// Entries of enumerations. Those of "PixelFormat" are PixelFormatName's.
namespace FeatureEntry {

inline constexpr char kOff[] = "Off";
inline constexpr char kOn[] = "On";
inline constexpr char kMono[] = "Mono";
inline constexpr char kTimed[] = "Timed";
inline constexpr char kContinuous[] = "Continuous";
inline constexpr char kSingleFrame[] = "SingleFrame";
inline constexpr char kFrameStart[] = "FrameStart";
inline constexpr char kSoftware[] = "Software";
inline constexpr char kLine2[] = "Line2";
inline constexpr char kFreerun[] = "Freerun";
inline constexpr char kRisingEdge[] = "RisingEdge";
inline constexpr char kFallingEdge[] = "FallingEdge";
inline constexpr char kRed[] = "Red";
inline constexpr char kBlue[] = "Blue";
inline constexpr char kSensor[] = "Sensor";
inline constexpr char kMain[] = "Main";

}  // namespace FeatureEntry
