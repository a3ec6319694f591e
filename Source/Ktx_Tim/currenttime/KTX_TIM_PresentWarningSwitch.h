#ifndef KTX_TIM_PRESENTWARNINGSWITCH_H
#define KTX_TIM_PRESENTWARNINGSWITCH_H

namespace KTX::TIM {

/// True while the warning of an old mapping is printed.
bool isPresentWarningEnabled();

}  // namespace KTX::TIM

#endif  // KTX_TIM_PRESENTWARNINGSWITCH_H
