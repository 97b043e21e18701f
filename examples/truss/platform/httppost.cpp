// SPDX-License-Identifier: MIT
// truss: platform
#include "truss/platform/httppost.h"

#include "truss/platform/conversation.h"
#include "truss/text/text.h"

#include <kel/problem.h>
#include <kel/stringtokenizer.h>
#include <kel/translator.h>

#include <curl/curl.h>

#include <memory>

namespace truss
{
namespace
{
constexpr long connectSeconds = 15;

/// The library's own state, for the life of the process.
struct Curl
{
    Curl() { curl_global_init(CURL_GLOBAL_DEFAULT); }
    ~Curl() { curl_global_cleanup(); }
};

using Transfer = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using Headers = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

std::size_t receive(char* data, std::size_t size, std::size_t count, void* conversation)
{
    return static_cast<Conversation*>(conversation)->receive(data, size * count) ? size * count : 0; // 0 ends it
}

int report(void* conversation, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    return static_cast<Conversation*>(conversation)->goOn() ? 0 : 1; // 1 ends it
}

Headers toList(const std::string& headers)
{
    Headers list(nullptr, &curl_slist_free_all);
    for (StringTokenizer lines(headers, '\n'); lines.hasNext();)
    {
        curl_slist* const longer = curl_slist_append(list.get(), lines.m_token.c_str());
        static_cast<void>(list.release());
        list.reset(longer);
    }
    return list;
}

void setUp(CURL* transfer, const std::string& address, const std::string& body, Conversation& conversation)
{
    curl_easy_setopt(transfer, CURLOPT_URL, address.c_str());
    curl_easy_setopt(transfer, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(transfer, CURLOPT_POST, 1L);
    curl_easy_setopt(transfer, CURLOPT_POSTFIELDS, body.data());
    curl_easy_setopt(transfer, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYHOST, 2L);
    curl_easy_setopt(transfer, CURLOPT_CONNECTTIMEOUT, connectSeconds);
    curl_easy_setopt(transfer, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(transfer, CURLOPT_WRITEFUNCTION, receive);
    curl_easy_setopt(transfer, CURLOPT_WRITEDATA, &conversation);
    curl_easy_setopt(transfer, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(transfer, CURLOPT_XFERINFOFUNCTION, report);
    curl_easy_setopt(transfer, CURLOPT_XFERINFODATA, &conversation);
}
} // namespace

void HttpPost::addHeader(const std::string& name, const std::string& value)
{
    m_headers += name + ": " + value + '\n';
}

std::string HttpPost::send(const std::string& body) const
{
    static const Curl s_curl;
    const Transfer transfer(curl_easy_init(), &curl_easy_cleanup);
    const Headers headers = toList(m_headers);
    Conversation conversation;
    setUp(transfer.get(), m_address, body, conversation);
    curl_easy_setopt(transfer.get(), CURLOPT_TIMEOUT_MS, static_cast<long>(m_limit.count()));
    curl_easy_setopt(transfer.get(), CURLOPT_HTTPHEADER, headers.get());

    const CURLcode result = curl_easy_perform(transfer.get());
    conversation.rethrowFailure();
    const Ztring address = fromUtf8(m_address);
    if (result != CURLE_OK)
        Problem::throwProblem(
            fill(Translator::tr("Failed to post to '%1': %2"), address, Ztring(curl_easy_strerror(result))));
    long code = 0;
    curl_easy_getinfo(transfer.get(), CURLINFO_RESPONSE_CODE, &code);
    if (code < 200 || code >= 300)
        Problem::throwProblem(fill(Translator::tr("'%1' answered with status %2"), address, toText(code)));
    return conversation.getReply();
}
} // namespace truss
