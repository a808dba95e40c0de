// cadtool's entry point: the command line handed to CadTool.
#include <iostream>
#include <string>
#include <vector>

#include "apps/cadtool/CadTool.h"

int main(int argc, char** argv) {
    cadtool::CadTool tool(std::cout, std::cerr);
    return tool.run(std::vector<std::string>(argv + 1, argv + argc));
}
