// make-example-speaker OUTPUT-FOLDER: writes the example files.
#include <cstdio>

#include "example-speaker/ExampleFiles.h"
#include "files/ResponseFile.h"
#include "platform/System.h"
#include "transform/FftTables.h"

int main(int argc, char** argv) {
    tonvane::KeepStandardStreams();
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-example-speaker OUTPUT-FOLDER\n");
        return 2;
    }
    tonvane::InitFftTables(tonvane::responseFileSamples);
    if (!tonvane::example::WriteExampleFiles(argv[1])) {
        std::fprintf(stderr, "make-example-speaker: cannot write into %s\n", argv[1]);
        return 1;
    }
    return 0;
}
