#include "core/dial_boxes.h"

namespace velorn {

void fill_boxes(Module1& module1, const Settings& settings) {
    const Variant on{std::int16_t{1}};
    module1.txtanrufer = settings.anrufer.text();
    module1.txtmodinit = settings.modeminit.text();
    module1.txtprestrtext = settings.vorwahl.text();
    module1.txtprestrcheck = settings.vorwahlan == on;
    module1.mdexport = settings.lanport.text();
    module1.telnet = settings.lanaktiv == on;
}

bool over_gateway(const Module1& module1) { return module1.telnet && !module1.istip; }

} // namespace velorn
