// errors_test.cpp
// Each error of Aravis, and what it is to a caller of VimbaC.
#include "aravis/errors.h"

#include <gtest/gtest.h>

namespace {

using Bridge::ErrorOf;
using Bridge::ErrorSlot;

struct Row {
  int aravis;
  VmbError_t vimba;
};

void ExpectRows(GQuark domain, const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    GError* const error = g_error_new_literal(domain, row.aravis, "text");
    EXPECT_EQ(ErrorOf(error), row.vimba) << g_quark_to_string(domain) << ' ' << row.aravis;
    g_error_free(error);
  }
}

TEST(Errors, OfDevices) {
  ExpectRows(ARV_DEVICE_ERROR, {{ARV_DEVICE_ERROR_WRONG_FEATURE, VmbErrorWrongType},
                                {ARV_DEVICE_ERROR_FEATURE_NOT_FOUND, VmbErrorNotFound},
                                {ARV_DEVICE_ERROR_NOT_CONNECTED, VmbErrorDeviceNotOpen},
                                {ARV_DEVICE_ERROR_PROTOCOL_ERROR, VmbErrorIO},
                                {ARV_DEVICE_ERROR_TRANSFER_ERROR, VmbErrorIO},
                                {ARV_DEVICE_ERROR_TIMEOUT, VmbErrorTimeout},
                                {ARV_DEVICE_ERROR_NOT_FOUND, VmbErrorNotFound},
                                {ARV_DEVICE_ERROR_INVALID_PARAMETER, VmbErrorInvalidValue},
                                {ARV_DEVICE_ERROR_GENICAM_NOT_FOUND, VmbErrorInternalFault},
                                {ARV_DEVICE_ERROR_NO_STREAM_CHANNEL, VmbErrorInternalFault},
                                {ARV_DEVICE_ERROR_NOT_CONTROLLER, VmbErrorInvalidAccess},
                                {ARV_DEVICE_ERROR_UNKNOWN, VmbErrorInternalFault},
                                {ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED, VmbErrorNotImplemented},
                                {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER, VmbErrorInvalidValue},
                                {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS, VmbErrorIO},
                                {ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT, VmbErrorInvalidAccess},
                                {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT, VmbErrorIO},
                                {ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED, VmbErrorInvalidAccess},
                                {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY, VmbErrorInvalidAccess}});
}

TEST(Errors, OfFeatures) {
  ExpectRows(ARV_GC_ERROR, {{ARV_GC_ERROR_PROPERTY_NOT_DEFINED, VmbErrorInternalFault},
                            {ARV_GC_ERROR_NODE_NOT_FOUND, VmbErrorNotFound},
                            {ARV_GC_ERROR_EMPTY_ENUMERATION, VmbErrorInvalidValue},
                            {ARV_GC_ERROR_OUT_OF_RANGE, VmbErrorInvalidValue},
                            {ARV_GC_ERROR_READ_ONLY, VmbErrorInvalidAccess},
                            {ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND, VmbErrorInvalidValue}});
}

TEST(Errors, OfNobodyKnownAreInternalFaults) {
  ExpectRows(ARV_DEVICE_ERROR, {{4711, VmbErrorInternalFault}});
  ExpectRows(ARV_GC_ERROR, {{4711, VmbErrorInternalFault}});
  // The number of a device's error that means something.
  ExpectRows(G_IO_ERROR, {{ARV_DEVICE_ERROR_NOT_FOUND, VmbErrorInternalFault}});
}

TEST(Errors, ThatAreNoneAreSuccess) {
  EXPECT_EQ(ErrorOf(nullptr), VmbErrorSuccess);
  EXPECT_EQ(ErrorSlot().Code(), VmbErrorSuccess);
  EXPECT_STREQ(ErrorSlot().Text(), "");
}

TEST(ErrorSlots, ForgetWhatTheyHeldWhenTheyAreTakenAgain) {
  ErrorSlot slot;
  g_set_error_literal(slot.Take(), ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_TIMEOUT, "too late");
  EXPECT_EQ(slot.Code(), VmbErrorTimeout);
  EXPECT_STREQ(slot.Text(), "too late");
  EXPECT_TRUE(slot.Is(ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_TIMEOUT));
  EXPECT_FALSE(slot.Is(ARV_GC_ERROR, ARV_DEVICE_ERROR_TIMEOUT));

  EXPECT_EQ(*slot.Take(), nullptr);

  EXPECT_EQ(slot.Code(), VmbErrorSuccess);
}

}  // namespace
