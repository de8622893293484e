// What has to be in place before the first editor object is created: classes, proxies, texts, folders.
//
// All of it is process-wide, and the classes and the store go with the Setup, which outlives every component.
// The options and the transcript outlive the Setup.
#pragma once

#include <memory>

#include "faults/fault_plan.h"
#include "run_setup/run_options.h"

namespace host {

class Open_Store;

class Setup {
public:
    // Checks what can be told without files and stores. Throws Usage_Error.
    Setup(const Common_Options& options, Transcript& transcript);

    ~Setup();
    Setup(const Setup&) = delete;
    Setup& operator=(const Setup&) = delete;

    // Reads the files, opens the store, and registers everything. Throws Start_Error.
    void Start();

private:
    void Read_Files();

    const Common_Options& options;
    std::unique_ptr<Open_Store> store;
    std::shared_ptr<Fault_Plan> plan = std::make_shared<Fault_Plan>();
};

} // namespace host
