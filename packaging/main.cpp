#include "app/commandline.h"
#include "batch/commandline.h"
#include "demo/commandline.h"
#include "util/buildinfo.h"

#include <fstream>
#include <iostream>

// morvantide-descriptions FOLDER: writes manual page and completion of each program into the folder, as NAME.1 and NAME,
// and prints the version.

namespace {

bool write(const std::string &path, const std::string &text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    return file.good();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::cerr << "morvantide-descriptions FOLDER\n";
        return 2;
    }
    const Batch::CommandLineParser batch(Batch::Pictures::Present);
    const Demo::CommandLineParser demo;
    const struct {
        const char *name;
        std::string manualPage, completion;
    } programs[] = {
        {"morvantide", CommandLine::manualPage(), CommandLine::bashCompletion()},
        {"morvantide-batch", batch.manualPage(), batch.bashCompletion()},
        {"morvantide-demo", demo.manualPage(), demo.bashCompletion()},
    };
    for (const auto &program : programs) {
        const std::string path = std::string(argv[1]) + '/' + program.name;
        if (!write(path + ".1", program.manualPage) || !write(path, program.completion)) {
            std::cerr << path << " can't be written\n";
            return 1;
        }
    }
    std::cout << BuildInfo::version().toStdString() << '\n';
    return 0;
}
