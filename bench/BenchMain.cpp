// tonvane-bench: times of the transform, the analysis, the design and its parts, beside those of
// FFTW and of the bare solver calls. Takes the options of Google Benchmark; bench/ratios prints the
// quotients.
#include <benchmark/benchmark.h>

#include "design/DesignGrid.h"
#include "transform/FftTables.h"

int main(int argc, char** argv) {
    tonvane::InitFftTables(tonvane::responseLength);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
