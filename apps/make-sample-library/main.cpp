// make-sample-library: writes the sample library drawing and its supplier logo into a folder
// (data/samples of the source tree when none is given).
#include <iostream>
#include <string>

#include "apps/make-sample-library/SampleLibrary.h"

int main(int argc, char** argv) {
    if (argc > 2 || (argc == 2 && std::string(argv[1]).starts_with("-"))) {
        std::cerr << "Usage: make-sample-library [FOLDER]\n"
                     "Writes standard-parts.dxf and supplier-logo.bmp into FOLDER (default: the\n"
                     "source tree's data/samples).\n";
        return 2;
    }
    const std::string folder = argc == 2 ? argv[1] : VANTOR_SOURCE_DIR "/data/samples";
    const cad::ErrorStatus es = vantor::sample::writeSampleLibrary(folder);
    if (es != cad::ErrorStatus::eOk) {
        std::cerr << "make-sample-library: cannot write into " << folder << " ("
                  << cad::errorStatusName(es) << ")\n";
        return 1;
    }
    std::cout << "wrote " << folder << "/" << vantor::sample::kSampleDrawingName << " and "
              << vantor::sample::kSampleLogoName << '\n';
    return 0;
}
