#include "CatalogueLocation.h"

#include <system_error>

namespace velmor::tools {

namespace fs = std::filesystem;

fs::path CatalogueLocation::find() {
  std::error_code error;
  const auto folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const auto& place :
       {folder / "catalogue.json", folder / "../share/velmor/local-provider/catalogue.json"})
    if (fs::exists(place, error)) return place;
  return LOCAL_PROVIDER_CATALOGUE;
}

} // namespace velmor::tools
