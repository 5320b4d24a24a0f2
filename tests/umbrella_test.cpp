// The umbrella header is the header "for everything": it must include every
// public header that the build installs, whatever is added later.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

std::string contentsOf(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(UmbrellaHeader, IncludesEveryPublicHeader) {
    const std::string source = __FILE__;
    const std::string root = source.substr(0, source.rfind("/tests/"));
    const std::string cmake = contentsOf(root + "/CMakeLists.txt");
    const std::string umbrella = contentsOf(root + "/include/cellformula/cellformula.h");
    const std::size_t list = cmake.find("set(CELLFORMULA_PUBLIC_HEADERS");
    ASSERT_NE(list, std::string::npos);
    std::istringstream lines(cmake.substr(list, cmake.find(')', list) - list));
    std::string line;
    std::getline(lines, line);
    int headers = 0;
    while (std::getline(lines, line)) {
        const std::string header = line.substr(line.rfind('/') + 1);
        if (header.empty() || header == "cellformula.h") continue;
        ++headers;
        EXPECT_NE(umbrella.find("#include \"" + header + "\""), std::string::npos) << header;
    }
    EXPECT_GT(headers, 10);
}

}  // namespace
