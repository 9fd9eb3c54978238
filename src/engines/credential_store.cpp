#include "engines/credential_store.h"

namespace velarc {

using namespace Qt::StringLiterals;

CredentialStoreError CredentialStoreError::keychain(qint32 status)
{
    return CredentialStoreError(u"Keychain error ("_s + QString::number(status) + u")."_s);
}

CredentialStoreError CredentialStoreError::unsupportedProvider()
{
    return CredentialStoreError(u"This provider does not require a stored credential."_s);
}

CredentialStoreError CredentialStoreError::invalidSecret()
{
    return CredentialStoreError(u"Credential is invalid."_s);
}

std::optional<QString> credentialAccount(AIProvider provider)
{
    switch (provider) {
    case AIProvider::OpenAI:
        return u"openai_api_key"_s;
    case AIProvider::Gemini:
        return u"gemini_api_key"_s;
    case AIProvider::Anthropic:
        return u"anthropic_api_key"_s;
    case AIProvider::UseDefault:
    case AIProvider::AppleIntelligence:
    case AIProvider::LocalFallback:
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

const QList<AIProvider> &cloudProviders()
{
    static const QList<AIProvider> kProviders{
        AIProvider::OpenAI, AIProvider::Gemini, AIProvider::Anthropic};
    return kProviders;
}

} // namespace velarc
