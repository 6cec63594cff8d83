// Loaded into every program that runs in the emulator. The emulator cannot clone a process with a process
// descriptor, and QProcess, which asks waitid(2) for that ability, is misled by the host's kernel: say what a
// kernel without it says.
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// Programs of the host, which the emulated one starts, could not load this.
__attribute__((constructor)) void leaveNoTrace()
{
    unsetenv("LD_PRELOAD");
}

} // namespace

long syscall(long nNumber, ...) noexcept
{
    if (nNumber == SYS_waitid) {
        errno = EINVAL;
        return -1;
    }
    static const auto s_fnReal = reinterpret_cast<long (*)(long, ...)>(dlsym(RTLD_NEXT, "syscall"));
    std::array<long, 6> oArguments{};
    va_list pList;
    va_start(pList, nNumber);
    for (long& nArgument : oArguments) {
        nArgument = va_arg(pList, long);
    }
    va_end(pList);
    const auto& [n0, n1, n2, n3, n4, n5] = oArguments;
    return s_fnReal(nNumber, n0, n1, n2, n3, n4, n5);
}
