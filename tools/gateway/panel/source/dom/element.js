/**
 * Makes an element. Text is always text: nothing that a device or a person has written is read as markup.
 *   make('button', {class: 'quiet', onclick: run, 'aria-pressed': 'true'}, 'Run')
 * @template {keyof HTMLElementTagNameMap} Tag
 * @param {Tag} tag
 * @param {Record<string, any>} [attributes] a function listens, true sets the attribute, false and null leave it out
 * @param {...(Node | string | null | undefined)} children
 * @returns {HTMLElementTagNameMap[Tag]}
 */
export function make(tag, attributes = {}, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        setAttribute(element, name, value);
    }
    append(element, children);
    return element;
}

/** @param {Element} element @param {(Node | string | null | undefined)[]} children */
export function append(element, children) {
    element.append(.../** @type {(Node | string)[]} */ (children.filter((child) => child !== null && child !== undefined)));
}

/** @param {Element} element @param {string} name @param {any} value */
export function setAttribute(element, name, value) {
    if (typeof value === 'function') {
        element.addEventListener(name.slice(2), value);
    } else if (value === false || value === null || value === undefined) {
        element.removeAttribute(name);
    } else if (element.getAttribute(name) !== String(value === true ? '' : value)) {
        element.setAttribute(name, value === true ? '' : String(value));
    }
}

/** Touches the page only if the text differs. @param {Node} node @param {string} text */
export function setText(node, text) {
    if (node.textContent !== text) {
        node.textContent = text;
    }
}

/** @param {Element} element @param {...(Node | string | null | undefined)} children */
export function replaceChildren(element, ...children) {
    element.replaceChildren();
    append(element, children);
}

/**
 * A choice from a list.
 * @param {[string, string][]} options value and text
 * @param {string} chosen
 * @param {Record<string, any>} [attributes]
 */
export function makeSelect(options, chosen, attributes = {}) {
    const select = make('select', attributes);
    for (const [value, text] of options) {
        select.append(make('option', { value, selected: value === chosen }, text));
    }
    select.value = chosen;
    return select;
}

/** A field with its label above. @param {string} label @param {HTMLElement} field @param {string} [note] */
export function makeField(label, field, note) {
    return make('label', { class: 'field' }, make('span', { class: 'field-label' }, label), field,
        note ? make('span', { class: 'note' }, note) : null);
}
