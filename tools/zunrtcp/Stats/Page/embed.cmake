# usage: cmake -DPAGE=folder -DCHARTS=folder -DOUTPUT=Page.cpp -P embed.cmake
# Puts the page together, style and scripts within it, and writes it as a C++ source.
cmake_minimum_required(VERSION 3.22) # marks stay marks

function(inline mark file)
  file(READ "${file}" text)
  string(REPLACE "${mark}" "${text}" page "${page}")
  set(page "${page}" PARENT_SCOPE)
endfunction()

file(READ "${PAGE}/report.html" page)
inline("@CHARTS_LICENSE@" "${CHARTS}/LICENSE")
inline("@CHARTS_STYLE@" "${CHARTS}/uPlot.min.css")
inline("@STYLE@" "${PAGE}/report.css")
inline("@CHARTS@" "${CHARTS}/uPlot.iife.min.js")
inline("@SCRIPT@" "${PAGE}/report.js")
file(WRITE "${OUTPUT}.html" "${page}")

# A string literal of this length is more than compilers must take.
file(READ "${OUTPUT}.html" bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "((0x..,){24})" "\\1\n" bytes "${bytes}")
file(WRITE "${OUTPUT}" "#include \"tools/zunrtcp/Stats/Page/Page.h\"

namespace {
constexpr unsigned char page[] = {
${bytes}};
}  // namespace

std::string_view zunrtcp::Page() { return {reinterpret_cast<const char*>(page), sizeof page}; }
")
