// Starting programs of this machine.
#pragma once

#include "runtime/outside.h"
#include "runtime/paths.h"

namespace velorn {

class QtProcesses final : public Processes {
  public:
    explicit QtProcesses(const Paths& paths) : paths_(paths) {}

    Outcome start(std::string_view path) override;

  private:
    const Paths& paths_;
};

} // namespace velorn
