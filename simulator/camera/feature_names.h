// camera/feature_names.h
// The names of all simulated features, and of the entries that the code asks for.
#pragma once

namespace Simulator::FeatureName {

// Identity.
inline constexpr char kDeviceVendorName[] = "DeviceVendorName";
inline constexpr char kDeviceModelName[] = "DeviceModelName";
inline constexpr char kDeviceID[] = "DeviceID";
inline constexpr char kDeviceUserID[] = "DeviceUserID";
inline constexpr char kDeviceFirmwareVersion[] = "DeviceFirmwareVersion";
inline constexpr char kGevCurrentIPAddress[] = "GevCurrentIPAddress";
inline constexpr char kGevDeviceMACAddress[] = "GevDeviceMACAddress";
inline constexpr char kDeviceTemperatureSelector[] = "DeviceTemperatureSelector";
inline constexpr char kDeviceTemperature[] = "DeviceTemperature";

// Image format.
inline constexpr char kSensorType[] = "SensorType";
inline constexpr char kSensorBits[] = "SensorBits";
inline constexpr char kSensorWidth[] = "SensorWidth";
inline constexpr char kSensorHeight[] = "SensorHeight";
inline constexpr char kWidthMax[] = "WidthMax";
inline constexpr char kHeightMax[] = "HeightMax";
inline constexpr char kWidth[] = "Width";
inline constexpr char kHeight[] = "Height";
inline constexpr char kOffsetX[] = "OffsetX";
inline constexpr char kOffsetY[] = "OffsetY";
inline constexpr char kBinningHorizontal[] = "BinningHorizontal";
inline constexpr char kBinningVertical[] = "BinningVertical";
inline constexpr char kPixelFormat[] = "PixelFormat";
inline constexpr char kPayloadSize[] = "PayloadSize";

// Acquisition and trigger.
inline constexpr char kAcquisitionMode[] = "AcquisitionMode";
inline constexpr char kAcquisitionFrameCount[] = "AcquisitionFrameCount";
inline constexpr char kAcquisitionStart[] = "AcquisitionStart";
inline constexpr char kAcquisitionStop[] = "AcquisitionStop";
inline constexpr char kAcquisitionAbort[] = "AcquisitionAbort";
inline constexpr char kAcquisitionFrameRateAbs[] = "AcquisitionFrameRateAbs";
inline constexpr char kAcquisitionFrameRateLimit[] = "AcquisitionFrameRateLimit";
inline constexpr char kTriggerMode[] = "TriggerMode";
inline constexpr char kTriggerSelector[] = "TriggerSelector";
inline constexpr char kTriggerSource[] = "TriggerSource";
inline constexpr char kTriggerActivation[] = "TriggerActivation";
inline constexpr char kTriggerDelayAbs[] = "TriggerDelayAbs";
inline constexpr char kTriggerSoftware[] = "TriggerSoftware";

// Exposure, gain and colour.
inline constexpr char kExposureMode[] = "ExposureMode";
inline constexpr char kExposureAuto[] = "ExposureAuto";
inline constexpr char kExposureTimeAbs[] = "ExposureTimeAbs";
inline constexpr char kGain[] = "Gain";
inline constexpr char kGainAuto[] = "GainAuto";
inline constexpr char kBalanceWhiteAuto[] = "BalanceWhiteAuto";
inline constexpr char kBalanceRatioSelector[] = "BalanceRatioSelector";
inline constexpr char kBalanceRatioAbs[] = "BalanceRatioAbs";

// Transport.
inline constexpr char kGevHeartbeatTimeout[] = "GevHeartbeatTimeout";
inline constexpr char kGevTimestampTickFrequency[] = "GevTimestampTickFrequency";
inline constexpr char kGevTimestampControlLatch[] = "GevTimestampControlLatch";
inline constexpr char kGevTimestampControlReset[] = "GevTimestampControlReset";
inline constexpr char kGevTimestampValue[] = "GevTimestampValue";
inline constexpr char kStreamBytesPerSecond[] = "StreamBytesPerSecond";
inline constexpr char kGVSPPacketSize[] = "GVSPPacketSize";
inline constexpr char kGVSPAdjustPacketSize[] = "GVSPAdjustPacketSize";
inline constexpr char kStatFrameRate[] = "StatFrameRate";
inline constexpr char kStatFrameDelivered[] = "StatFrameDelivered";
inline constexpr char kStatFrameDropped[] = "StatFrameDropped";
inline constexpr char kStatPacketReceived[] = "StatPacketReceived";
inline constexpr char kStatPacketMissed[] = "StatPacketMissed";

}  // namespace Simulator::FeatureName

// Entries of ExposureAuto, GainAuto and BalanceWhiteAuto.
namespace Simulator::AutoEntry {

inline constexpr char kOff[] = "Off";
inline constexpr char kOnce[] = "Once";
inline constexpr char kContinuous[] = "Continuous";

}  // namespace Simulator::AutoEntry

namespace Simulator::AcquisitionModeEntry {

inline constexpr char kContinuous[] = "Continuous";
inline constexpr char kSingleFrame[] = "SingleFrame";
inline constexpr char kMultiFrame[] = "MultiFrame";

}  // namespace Simulator::AcquisitionModeEntry
