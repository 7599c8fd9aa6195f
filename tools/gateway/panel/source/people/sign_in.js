import { problemText, request } from '../api/client.js';
import { events } from '../model/application.js';
import { t } from '../text/text.js';
import { Component } from '../dom/component.js';
import { append, make, makeField, setText } from '../dom/element.js';

/** Name and password; shown whenever the gateway does not know who is asking. */
export class SignIn extends Component {
    #user = make('input', { name: 'user', autocomplete: 'username', required: true });
    #password = make('input', { name: 'password', type: 'password', autocomplete: 'current-password', required: true });
    #message = make('p', { class: 'tone-alarm', role: 'alert' });

    start() {
        const form = make('form', { class: 'card sign-in' }, make('h1', {}, t('sign-in.title')), make('p', { class: 'note' }, t('sign-in.note')),
            makeField(t('sign-in.user'), this.#user), makeField(t('sign-in.password'), this.#password), this.#message,
            make('button', { class: 'primary', type: 'submit' }, t('sign-in')));
        form.addEventListener('submit', (event) => {
            event.preventDefault();
            this.#send();
        });
        append(this, [form]);
        this.#user.focus();
    }

    async #send() {
        setText(this.#message, '');
        const answer = await request('POST', '/login', { user: this.#user.value, password: this.#password.value });
        if (answer.ok) {
            events.dispatchEvent(new CustomEvent('signed-in'));
        } else {
            setText(this.#message, answer.status === 401 ? t('sign-in.wrong') : problemText(answer, t('attempt.unreachable')));
            this.#password.select();
        }
    }
}

customElements.define('sign-in', SignIn);
