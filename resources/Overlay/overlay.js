// Shows the track that /events tells of. ?theme=NAME in the address chooses the colours.
'use strict';

const THEMES = ['dark', 'light', 'red', 'red-light', 'orange', 'orange-light'];
const card = document.getElementById('track');

function chooseTheme() {
  const wanted = new URLSearchParams(location.search).get('theme');
  if (THEMES.includes(wanted)) document.documentElement.dataset.theme = wanted;
}

function details(track) {
  const tempo = track.bpm > 0 ? `${Math.round(track.bpm * 10) / 10} BPM` : '';
  return [tempo, track.key, track.genre].filter(Boolean).join(' · ');
}

// Texts of tracks are shown as they are, never as markup.
function show(track) {
  const shown = card.hidden ? null : card.dataset.shown;
  const next = track ? JSON.stringify(track) : null;
  if (shown === next) return;
  card.hidden = !track;
  if (!track) return;
  card.dataset.shown = next;
  document.getElementById('title').textContent = track.title;
  document.getElementById('artist').textContent = track.artist;
  document.getElementById('details').textContent = details(track);
  card.classList.remove('arriving');
  // Asking for the size makes the browser see that the animation begins anew.
  void card.offsetWidth;
  card.classList.add('arriving');
}

chooseTheme();
// The browser connects anew by itself when the server goes and comes back.
const events = new EventSource('events');
events.addEventListener('track', (event) => show(JSON.parse(event.data)));
