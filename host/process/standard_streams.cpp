#include "process/standard_streams.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "automation/interruption.h"
#include "process/errors.h"

namespace host {

// The wrong way round, so that who reads or writes there is told that it fails.
void Take_Closed_Descriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF)
            (void)open("/dev/null",
                       descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY); // takes the lowest free one
}

Input_Buffer::int_type Input_Buffer::underflow() {
    for (;;) {
        const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count == 0)
            return traits_type::eof();
        if (count > 0) {
            setg(buffer.data(), buffer.data(), buffer.data() + count);
            return traits_type::to_int_type(buffer[0]);
        }
        if (errno != EINTR || automation::Is_Interrupted())
            throw Start_Error("standard input cannot be read: " + std::generic_category().message(errno));
    }
}

} // namespace host
