// Stands in for the stick's updater program in tests. Like the real one it
// takes "-FW=<file>" and "-NOZIP" and answers only by its exit code: the
// firmware file's first line is the code to end with (5 is success). Wrong
// arguments or an unreadable file end with 0, the updater's failure.
#include <cstdlib>
#include <fstream>
#include <string>

int main(int argc, char **argv)
{
    if (argc != 3 || std::string(argv[2]) != "-NOZIP")
        return 0;
    const std::string fw = argv[1];
    if (fw.rfind("-FW=", 0) != 0)
        return 0;
    std::ifstream file(fw.substr(4));
    std::string line;
    if (!file || !std::getline(file, line))
        return 0;
    return std::atoi(line.c_str());
}
