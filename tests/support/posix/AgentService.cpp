#include "support/AgentService.h"

struct AgentService::Registration {};

AgentService::AgentService() = default;
AgentService::~AgentService() = default;
