#pragma once

#include "simulator/controller/controller.h"

#include <string>
#include <vector>

/// A controller to talk to without sockets; time passes when the test says so.
class Talk {
public:
    explicit Talk(const kestrel_simulator::ControllerSetup& setup = {});

    /// The whole reply to "kestrel2 <text>"; empty when there is none.
    std::string say(const std::string& text);

    /// What is to be done with the reply.
    kestrel_simulator::ReplyPlan plan(const std::string& text);

    /// The value of a parameter; "err <number>" when it is refused.
    std::string get(const std::string& parameter);

    /// "ok", or "err <number>".
    std::string set(const std::string& parameterAndValue);
    std::string act(const std::string& action);

    /// Numbers in the value of a parameter.
    std::vector<double> numbers(const std::string& parameter);

    /// Lets time pass.
    void wait(double seconds) { time += seconds; }

    /// Lets time pass up to the next frame; its lines, empty when none comes.
    std::vector<std::string> nextFrame();

    /// The line of that frame that begins with the word, without a line end; empty when there is
    /// none.
    std::string nextLine(const std::string& channel);

    kestrel_simulator::Controller controller;
    kestrel_simulator::Session session;
    double time = 0.0;
};
