// The run-time faults of files, folders, pictures and the common dialog, with the numbers and
// sentences the runtime's error box shows for them.
#pragma once

#include "platform/Runtime.h"

namespace tamrix::rt {

constexpr int ErrDeviceUnavailable = 68;
constexpr int ErrPermissionDenied = 70;
constexpr int ErrPathFileAccess = 75;
constexpr int ErrPathNotFound = 76;
constexpr int ErrInvalidPropertyValue = 380;
constexpr int ErrInvalidPicture = 481;
constexpr int ErrDialogCancelled = 32755;

inline RuntimeError DeviceUnavailable() { return RuntimeError(ErrDeviceUnavailable, "Device unavailable"); }
inline RuntimeError PermissionDenied() { return RuntimeError(ErrPermissionDenied, "Permission denied"); }
inline RuntimeError PathFileAccess() { return RuntimeError(ErrPathFileAccess, "Path/File access error"); }
inline RuntimeError PathNotFound() { return RuntimeError(ErrPathNotFound, "Path not found"); }
inline RuntimeError InvalidPropertyValue() { return RuntimeError(ErrInvalidPropertyValue, "Invalid property value"); }
inline RuntimeError InvalidPicture() { return RuntimeError(ErrInvalidPicture, "Invalid picture"); }
// What the common dialog raises on Cancel when it is told to.
inline RuntimeError DialogCancelled() { return RuntimeError(ErrDialogCancelled, "Cancel was selected."); }

}  // namespace tamrix::rt
