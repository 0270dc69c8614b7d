// The plant as the command line orders it: every place on air, the sites behind them, and what a person is
// told about it.
#pragma once

#include "plant/gateway.h"
#include "plant/options.h"
#include "plant/poll_event_loop.h"
#include "plant/sites.h"
#include "plant/station.h"
#include "plant/tcp_station.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velorn::plant {

class Plant {
  public:
    Plant(PollEventLoop& loop, const Options& options);
    Plant(const Plant&) = delete;
    Plant& operator=(const Plant&) = delete;

    // One line of UTF-8 each, without its end.
    std::function<void(const std::string&)> announce; // a place is on air
    std::function<void(const std::string&)> complain; // a place stays out
    std::function<void(const std::string&)> log;      // traffic, if the options want it

    // All sources have sent everything and it was read.
    std::function<void()> finished;

    // Goes on air. A TCP port that may not be used is left out with a complaint. False: a pseudo terminal is
    // not to be had, or nothing at all is on air.
    bool open();

    std::size_t on_air() const { return stations_.size() + tcp_stations_.size(); }
    const Sites& sites() const { return *sites_; }

  private:
    bool open_pseudo_terminals();
    bool open_station(const std::string& name, const std::string& link, MakeDevice make);
    void open_tcp_places();
    void open_gateway(const GatewayPlace& place);
    void open_demo();
    void open_tcp(TcpStationSettings settings, MakeDevice make);
    MakeDevice controller();
    DownloadFaults download_faults(std::size_t place) const;
    void log_downloads();
    Faults next_faults();

    PollEventLoop& loop_;
    Options options_;
    std::unique_ptr<Sites> sites_;
    std::vector<std::unique_ptr<Gateway>> gateways_;
    std::vector<std::unique_ptr<Station>> stations_;
    std::vector<std::unique_ptr<TcpStation>> tcp_stations_;
    std::size_t at_work_ = 0; // sources that haven't finished
    std::size_t controllers_ = 0;
    std::size_t modems_ = 0;
    std::size_t lines_ = 0;
};

} // namespace velorn::plant
