#include <memory>
#include <string>

#include <boost/make_shared.hpp>

#include "Areas.h"
#include "Check.h"
#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

void useLogging() {
  boost::shared_ptr<KTX::DBG::DbgLogFileC> const shared =
      boost::make_shared<KTX::DBG::DbgLogFileC>("Stranger");
  auto const owned = std::make_unique<KTX::DBG::DbgLogFileC>(std::string("Stranger"));
  CHECK(shared->isLevelEnabled(6) == owned->isLevelEnabled(6));
  owned->printLine(0, "%s %d\n", "not shown", 1);
  owned->writeText("said by a stranger");
}
