// Measures how long the candidates take to read a document from text, the document's end included, and to
// write it.
#include "candidates.h"
#include "documents.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

void readDocument(benchmark::State& oState, const Candidate* pCandidate)
{
    const std::string sText = configurationText(int(oState.range(0)));
    for (auto oRun : oState) {
        benchmark::DoNotOptimize(pCandidate->Read(sText));
    }
}

void writeDocument(benchmark::State& oState, const Candidate* pCandidate)
{
    const auto pDocument = pCandidate->Read(configurationText(int(oState.range(0))));
    for (auto oRun : oState) {
        benchmark::DoNotOptimize(pDocument->Write());
    }
}

void registerCandidate(const Candidate* pCandidate, const char* szName,
                       void (*pMeasure)(benchmark::State&, const Candidate*))
{
    const std::string sName = std::string(szName) + "/" + pCandidate->Name();
    benchmark::RegisterBenchmark(sName.c_str(), pMeasure, pCandidate)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
}

} // namespace

int main(int argc, char** argv)
{
    for (const Candidate* pCandidate : candidates()) {
        registerCandidate(pCandidate, "read", readDocument);
        registerCandidate(pCandidate, "write", writeDocument);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
