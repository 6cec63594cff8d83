// Prints, one line each: candidate, interfaces, heap bytes at the peak while reading, heap bytes that the
// document keeps. Every allocation of the process is counted, those in shared libraries too, with the size
// that the heap really gave.
#include "candidates.h"
#include "documents.h"

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>

extern "C" {
void* __libc_malloc(std::size_t nSize);
void* __libc_calloc(std::size_t nCount, std::size_t nSize);
void* __libc_realloc(void* pOld, std::size_t nSize);
void __libc_free(void* pOld);
}

namespace {

std::size_t nInUse = 0;
std::size_t nPeak = 0;

void* count(void* pNew)
{
    nInUse += malloc_usable_size(pNew);
    nPeak = std::max(nPeak, nInUse);
    return pNew;
}

void discount(void* pOld)
{
    nInUse -= malloc_usable_size(pOld);
}

void measure(const Candidate& oCandidate, int nInterfaces)
{
    const std::string sText = configurationText(nInterfaces);
    // Excludes one-time allocations of a library.
    oCandidate.Read(sText);
    const std::size_t nBefore = nInUse;
    nPeak = nInUse;
    const auto pDocument = oCandidate.Read(sText);
    std::printf("%s %d %zu %zu\n", oCandidate.Name(), nInterfaces, nPeak - nBefore, nInUse - nBefore);
}

} // namespace

// The parameters have the C library's names.
extern "C" {

void* malloc(std::size_t size)
{
    return count(__libc_malloc(size));
}

void* calloc(std::size_t nmemb, std::size_t size)
{
    return count(__libc_calloc(nmemb, size));
}

void* realloc(void* ptr, std::size_t size)
{
    discount(ptr);
    return count(__libc_realloc(ptr, size));
}

void free(void* ptr)
{
    discount(ptr);
    __libc_free(ptr);
}
}

int main()
{
    for (const Candidate* pCandidate : candidates()) {
        for (const int nInterfaces : {1, 10, 100, 1000}) {
            measure(*pCandidate, nInterfaces);
        }
    }
    return 0;
}
