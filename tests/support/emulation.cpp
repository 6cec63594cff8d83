// Loaded into every program that runs in the emulator. QProcess asks waitid(2) whether the kernel has process
// descriptors. The host's kernel has them, but the emulator cannot clone a process with one: reply no.
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// Programs of the host that the emulated one starts could not load this.
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
