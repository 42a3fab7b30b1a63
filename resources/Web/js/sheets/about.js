// Version, build date and the check for a newer release.
(() => {
  'use strict';

  const { dialogs, dom, native, state, text, update } = Velmor;
  const { make } = dom;
  const about = dom.byId('about');
  const facts = make('p', { class: 'about-version' });
  const outcome = make('div', { class: 'about-outcome', role: 'status' });
  const button = make('button', { type: 'button', class: 'primary', onclick: check }, 'Check for updates');
  let checking = false;

  const link = (label, address) =>
    /^https?:\/\//i.test(text.text(address)) &&
    make('button', { type: 'button', class: 'small', onclick: () => native.openLink(text.text(address)) }, label);

  /** The outcomes of a check in words, with the links that belong to them. */
  function tell(value) {
    const info = text.object(value);
    if (info.offline === true) {
      return [make('p', {}, 'The version server could not be reached. Check the connection and try again.')];
    }
    const latest = text.text(info.latest);
    if (!latest) return [make('p', {}, 'The version server gave no usable answer. Try again later.')];
    const notes = link('Release notes', info.releaseNotesUrl);
    if (info.updateAvailable !== true) {
      return [make('p', {}, `Velmor is up to date. The newest version is ${latest}.`), notes];
    }
    return [make('p', { class: 'good' }, `Version ${latest} is available.`), link('Download', info.downloadUrl), notes];
  }

  async function check() {
    if (checking) return;
    checking = true;
    button.setAttribute('aria-disabled', 'true');
    outcome.replaceChildren(make('p', {}, 'Asking the version server …'));
    let parts;
    try {
      parts = tell(await native.call('CheckForUpdate'));
    } catch (error) {
      parts = [make('p', {}, error.message)];
    }
    outcome.replaceChildren(...parts.filter(Boolean));
    button.removeAttribute('aria-disabled');
    checking = false;
  }

  about.append(
    dialogs.head(about, 'About'),
    make('div', { class: 'sheet about' },
      dom.icon('mark'), make('p', { class: 'about-name' }, 'Velmor'),
      make('p', { class: 'hint' }, 'Knows what plays and suggests what mixes.'),
      facts, button, outcome),
  );

  Velmor.view(['info'], ({ info }) => {
    const version = text.text(info?.version) || 'unknown';
    const date = text.text(info?.buildDate);
    dom.setText(facts, `Version ${version}${date ? `, built ${date}` : ''}`);
  });

  Velmor.showAbout = () => {
    // The menu can be had from the square, too, where there is no room for it.
    if (state.compact) native.call('RestoreWindow').catch((error) => update({ error: error.message }));
    dialogs.open(about);
  };
  native.on('show-about', Velmor.showAbout);
})();
