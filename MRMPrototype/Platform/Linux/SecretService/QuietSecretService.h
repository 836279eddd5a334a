#pragma once

#include <libsecret/secret.h>

namespace murmel {

/// The type of a SecretService that answers "dismissed" wherever the library would ask the user.
GType quietSecretServiceType();

}  // namespace murmel
