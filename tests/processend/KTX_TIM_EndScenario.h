#ifndef KTX_TIM_ENDSCENARIO_H
#define KTX_TIM_ENDSCENARIO_H

#ifdef _WIN32
#define KTX_TIM_SCENARIO_API __declspec(dllexport)
#else
#define KTX_TIM_SCENARIO_API __attribute__((visibility("default")))
#endif

/// Brings the process into the state that the scenario names, from which main() returns:
///   threads   detached threads read, observe, convert, set leap seconds and write log lines
///   waiting   threads wait for the library-wide lock, which the calling thread holds
///   orphaned  threads wait for it, and the thread that took it has ended
///   owner     a slot is connected whose destruction ends the process with another status
///   listener  as waiting, but a listener of the leap second ends the process, with both locks held
/// 0, or another status where that state cannot be reached.
extern "C" KTX_TIM_SCENARIO_API int enterEndScenario(char const* scenario);

#endif  // KTX_TIM_ENDSCENARIO_H
