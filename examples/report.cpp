// report FILE REPORT - reads the rain readings in FILE, and writes the sums for each station to REPORT.

#include <KelXmlLib/kel.h>

#include <iostream>
#include <map>

namespace
{

struct Sum
{
    long count = 0;
    double rain = 0;
    std::size_t letters = 0;
};

} // namespace

int main(int count, char** arguments)
try {
    if (count != 3) {
        std::cerr << "usage: report FILE REPORT\n";
        return 2;
    }
    const auto document = kel::Document::load(arguments[1]);
    std::map<std::string, Sum> sums;
    for (const kel::Element& reading : document.root().children("reading")) {
        Sum& sum = sums[reading.attribute("station", "unknown")];
        ++sum.count;
        sum.rain += reading.attribute("rain", 0.0);
        for (const kel::Element& remark : reading.children("remark"))
            sum.letters += remark.text().size();
    }

    kel::Writer report(arguments[2]);
    auto root = report.element("report");
    for (const auto& [name, sum] : sums) {
        auto station = report.element("station");
        station.attribute("name", name).attribute("readings", sum.count);
        report.element("rain", sum.rain);
        report.element("letters", sum.letters);
    }
    report.close();
} catch (const kel::Error& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
