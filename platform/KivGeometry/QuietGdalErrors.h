#pragma once

#include <cpl_error.h>

namespace KivGeometry {

/// Silences GDAL and PROJ messages on this thread for its lifetime and leaves
/// the thread's last-error state as it found it. Bad input is reported through
/// return values; nothing may be printed on the host's console.
class QuietGdalErrors
{
public:
    QuietGdalErrors() : m_pusher(CPLQuietErrorHandler) {}
    QuietGdalErrors(const QuietGdalErrors&) = delete;
    QuietGdalErrors& operator=(const QuietGdalErrors&) = delete;

private:
    CPLErrorStateBackuper m_state;
    CPLErrorHandlerPusher m_pusher;
};

} // namespace KivGeometry
