#include "control/WarningAlarm.h"

namespace torv {

bool WarningAlarm::began(AID aid, Time now) {
    if (!m_inWarning.insert(aid).second) return false;
    if (m_last && now - *m_last < pause) return false;
    m_last = now;
    return true;
}

}  // namespace torv
