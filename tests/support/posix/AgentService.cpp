#include "support/AgentService.h"

struct AgentService::Registration {};

AgentService::AgentService(const char*) {}
AgentService::~AgentService() = default;
