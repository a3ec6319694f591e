namespace KTX::TIM::TEST {

void placeholder();

void placeholder() {}

}  // namespace KTX::TIM::TEST
