namespace KTX::DBG {

void placeholder();

void placeholder() {}

}  // namespace KTX::DBG
