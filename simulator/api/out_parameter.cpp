// api/out_parameter.cpp
// The pointers through which a call reports.
#include "api/out_parameter.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <type_traits>

namespace Simulator {
namespace {

std::optional<double> NumberOf(const AnswerValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return static_cast<double>(*integer);
  if (const auto* number = std::get_if<double>(&value)) return *number;
  const auto* text = std::get_if<std::string>(&value);
  if (!text) return std::nullopt;
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (*text == "nan") return std::numeric_limits<double>::quiet_NaN();
  if (*text == "inf") return kInfinity;
  if (*text == "-inf") return -kInfinity;
  return std::nullopt;
}

// A text, or null where the value is; none for a value that is neither.
std::optional<const char*> TextOf(const AnswerValue& value) {
  if (std::holds_alternative<std::nullptr_t>(value)) return nullptr;
  const auto* text = std::get_if<std::string>(&value);
  return text ? std::optional(text->c_str()) : std::nullopt;
}

template <class Integer>
void WriteInteger(Integer* target, const AnswerValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) *target = static_cast<Integer>(*integer);
}

void WriteTo(VmbInt64_t* target, const AnswerValue& value) { WriteInteger(target, value); }
void WriteTo(VmbUint32_t* target, const AnswerValue& value) { WriteInteger(target, value); }
void WriteTo(VmbBool_t* target, const AnswerValue& value) { WriteInteger(target, value); }

void WriteTo(double* target, const AnswerValue& value) {
  if (const std::optional<double> number = NumberOf(value)) *target = *number;
}

void WriteTo(const char** target, const AnswerValue& value) {
  if (const std::optional<const char*> text = TextOf(value)) *target = *text;
}

void WriteTo(VmbHandle_t* target, const AnswerValue& value) {
  if (std::holds_alternative<std::nullptr_t>(value)) *target = nullptr;
}

void WriteTo(VmbVersionInfo_t* target, const AnswerValue& value) {
  for (VmbUint32_t* part : {&target->major, &target->minor, &target->patch}) WriteInteger(part, value);
}

void WriteTo(std::span<char> target, const AnswerValue& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (!text || text->empty()) return;
  for (std::size_t i = 0; i < target.size(); ++i) target[i] = (*text)[i % text->size()];
}

void WriteTo(std::span<VmbCameraInfo_t> target, const AnswerValue& value) {
  const std::optional<const char*> text = TextOf(value);
  if (!text) return;
  for (VmbCameraInfo_t& info : target) {
    for (const char** each :
         {&info.cameraIdString, &info.cameraName, &info.modelName, &info.serialString, &info.interfaceIdString}) {
      *each = *text;
    }
  }
}

void WriteTo(VmbCameraInfo_t* target, const AnswerValue& value) { WriteTo(std::span(target, 1), value); }

template <class Value>
std::span<std::byte> Bytes(std::span<Value> values) {
  return std::as_writable_bytes(values);
}
template <class Value>
std::span<std::byte> Bytes(Value* value) {
  return std::as_writable_bytes(std::span(value, 1));
}

}  // namespace

std::span<std::byte> BytesOf(const OutParameter& parameter) {
  return std::visit([](auto target) { return Bytes(target); }, parameter);
}

void Write(const OutParameter& parameter, const AnswerValue& value) {
  std::visit([&](auto target) { WriteTo(target, value); }, parameter);
}

}  // namespace Simulator
