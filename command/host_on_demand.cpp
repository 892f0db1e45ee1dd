#include "command/host_on_demand.hpp"

#include "command/module_path.hpp"

namespace finance::command {

const host::EmbeddedHost& HostOnDemand::get() {
    if (!host_) host_.emplace(find_module(told_module_, this_program()));
    return *host_;
}

}  // namespace finance::command
