// Loaded into every program that runs in the emulator. QProcess asks waitid(2) whether the kernel has process
// descriptors. The host's kernel has them, but the emulator cannot clone a process with one: reply no.
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/syscall.h>

namespace {

// Programs of the host that the emulated one starts could not load this.
__attribute__((constructor)) void leaveNoTrace()
{
    unsetenv("LD_PRELOAD");
}

} // namespace

// Declared with an ellipsis, but called alike on this processor.
extern "C" long syscall(long nNumber, long n0, long n1, long n2, long n3, long n4, long n5)
{
    if (nNumber == SYS_waitid) {
        errno = EINVAL;
        return -1;
    }
    static const auto s_fnReal = reinterpret_cast<decltype(&syscall)>(dlsym(RTLD_NEXT, "syscall"));
    return s_fnReal(nNumber, n0, n1, n2, n3, n4, n5);
}
