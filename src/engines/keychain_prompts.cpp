#include "engines/keychain_prompts.h"

#include <libsecret/secret.h>

#include <string_view>
#include <utility>

namespace velarc {

namespace {

// From the call of Prompt to the signal Completed. It belongs to a task, which has one reference
// for as long as the question is open.
struct Question
{
    SecretPrompt *prompt = nullptr;
    GCancellable *cancellable = nullptr;
    GMainContext *context = nullptr;
    gulong onCancel = 0;
    bool isOpen = true;
};

Question *questionOf(gpointer task)
{
    return static_cast<Question *>(g_task_get_task_data(G_TASK(task)));
}

void destroyQuestion(gpointer data)
{
    auto *question = static_cast<Question *>(data);
    g_object_unref(question->prompt);
    g_object_unref(question->cancellable);
    g_main_context_unref(question->context);
    delete question;
}

// Returns the task with what `giveBack` gives it, unless the question was over before.
template <typename GiveBack> void close(gpointer task, GiveBack giveBack)
{
    Question *question = questionOf(task);
    if (!std::exchange(question->isOpen, false)) {
        return;
    }
    g_signal_handlers_disconnect_by_data(question->prompt, task);
    g_cancellable_disconnect(question->cancellable, question->onCancel);
    giveBack(G_TASK(task));
    g_object_unref(task);
}

void giveLocked(GTask *task)
{
    g_task_return_new_error(
        task, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "%s", "the user was not asked, or said no");
}

void onSignal(GDBusProxy *, const gchar *, const gchar *signal, GVariant *parameters, gpointer task)
{
    if (std::string_view(signal) != "Completed"
        || g_variant_is_of_type(parameters, G_VARIANT_TYPE("(bv)")) == 0) {
        return;
    }
    close(task, [parameters](GTask *returned) {
        gboolean isDismissed = FALSE;
        GVariant *value = nullptr;
        g_variant_get(parameters, "(bv)", &isDismissed, &value);
        if (isDismissed != 0) {
            g_variant_unref(value);
            giveLocked(returned);
        } else {
            g_task_return_pointer(returned, value,
                [](gpointer unused) { g_variant_unref(static_cast<GVariant *>(unused)); });
        }
    });
}

void onOwner(GObject *prompt, GParamSpec *, gpointer task)
{
    gchar *owner = g_dbus_proxy_get_name_owner(G_DBUS_PROXY(prompt));
    if (owner == nullptr) {
        close(task, &giveLocked);
    }
    g_free(owner);
}

// The question is not dismissed: the widespread keyring daemon ends with a failed assertion when
// that happens to a question on the screen. It takes the question back itself when the connection
// goes.
gboolean closeCancelled(gpointer task)
{
    close(task, [](GTask *returned) { g_task_return_error_if_cancelled(returned); });
    return G_SOURCE_REMOVE;
}

// In the thread that cancels. The library's own source for this leaks when it is released while the
// cancellable still tells others.
void onCancelled(GCancellable *, gpointer task)
{
    GSource *source = g_idle_source_new();
    g_source_set_callback(source, &closeCancelled, g_object_ref(task), &g_object_unref);
    g_source_attach(source, questionOf(task)->context);
    g_source_unref(source);
}

void onPrompted(GObject *prompt, GAsyncResult *result, gpointer task)
{
    GError *error = nullptr;
    if (GVariant *reply = g_dbus_proxy_call_finish(G_DBUS_PROXY(prompt), result, &error)) {
        g_variant_unref(reply);
    } else {
        close(task, [&error](GTask *returned) {
            g_task_return_error(returned, std::exchange(error, nullptr));
        });
    }
    g_clear_error(&error);
    g_object_unref(task);
}

void ask(SecretService *service, SecretPrompt *prompt, const GVariantType *,
    GCancellable *cancellable, GAsyncReadyCallback callback, gpointer data)
{
    GTask *task = g_task_new(service, cancellable, callback, data);
    auto *question = new Question;
    question->prompt = SECRET_PROMPT(g_object_ref(prompt));
    question->cancellable = G_CANCELLABLE(g_object_ref(cancellable));
    question->context = g_main_context_ref_thread_default();
    g_task_set_task_data(task, question, &destroyQuestion);
    g_signal_connect(prompt, "g-signal", G_CALLBACK(&onSignal), task);
    g_signal_connect(prompt, "notify::g-name-owner", G_CALLBACK(&onOwner), task);
    question->onCancel =
        g_cancellable_connect(cancellable, G_CALLBACK(&onCancelled), task, nullptr);
    constexpr const char *kNoWindow = "";
    g_dbus_proxy_call(G_DBUS_PROXY(prompt), "Prompt", g_variant_new("(s)", kNoWindow),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable, &onPrompted, g_object_ref(task));
}

void refuse(SecretService *service, SecretPrompt *prompt, const GVariantType *,
    GCancellable *cancellable, GAsyncReadyCallback callback, gpointer data)
{
    g_dbus_proxy_call(G_DBUS_PROXY(prompt), "Dismiss", nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1,
        nullptr, nullptr, nullptr);
    GTask *task = g_task_new(service, cancellable, callback, data);
    giveLocked(task);
    g_object_unref(task);
}

GVariant *finish(SecretService *, GAsyncResult *result, GError **error)
{
    return static_cast<GVariant *>(g_task_propagate_pointer(G_TASK(result), error));
}

// The library's own asking is not overridden where it blocks: nothing here calls it so.
template <auto prompt> void setPrompt(gpointer serviceClass, gpointer)
{
    auto *setClass = static_cast<SecretServiceClass *>(serviceClass);
    setClass->prompt_async = prompt;
    setClass->prompt_finish = &finish;
}

template <auto prompt> GType registered(const char *name)
{
    return g_type_register_static_simple(SECRET_TYPE_SERVICE, name, sizeof(SecretServiceClass),
        &setPrompt<prompt>, sizeof(SecretService), nullptr, GTypeFlags(0));
}

} // namespace

std::size_t secretServiceType(Prompting prompting)
{
    static const GType kAsking = registered<&ask>("VelarcAskingSecretService");
    static const GType kRefusing = registered<&refuse>("VelarcRefusingSecretService");
    return prompting == Prompting::Allowed ? kAsking : kRefusing;
}

} // namespace velarc
