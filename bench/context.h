// The same parse, walk and save by two other libraries, to see the figures in proportion.

#pragma once

namespace bench
{

void registerContext();

} // namespace bench
