#pragma once

#include <memory>
#include <string>

#include "store/connection.h"
#include "store/engine.h"
#include "store/engine_catalog.h"

namespace store {

struct Connection::Impl {
  explicit Impl(Environment environment)
      : engine(std::make_shared<Engine>(std::move(environment))), catalog(*engine) {}

  std::shared_ptr<Engine> engine;
  EngineCatalog catalog;
  std::string connection_string;
  std::function<bool()> watch;
};

}  // namespace store
